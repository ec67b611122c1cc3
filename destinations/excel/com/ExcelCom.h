// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>

#include "destinations/excel/ObjectModel.h"

namespace bn::excel {

/// How long a busy application is asked again, and how long to wait between two times: the pause
/// doubles from the shortest to the longest. And how long one call may take to come back.
struct Paciencia {
    std::chrono::milliseconds limite{20000};
    std::chrono::milliseconds pausaMinima{50};
    std::chrono::milliseconds pausaMaxima{500};
    std::chrono::milliseconds llamada{60'000};
    /// Of the calls that open and save workbooks.
    std::chrono::milliseconds libro{300'000};
    /// Of the start; the system gives up by itself after two minutes.
    std::chrono::milliseconds arranque{300'000};
};

/// Starts an instance of Microsoft Excel of its own, invisible, through Automation: by its
/// programmatic identifier or by its class. The objects are to be used in this thread only.
///
/// Cells are read and written in blocks. A written cell reaches the application before anything
/// that could tell the difference; what the application refuses of it shows then. Cells that were
/// refused stay in the queue, so that a workbook cannot be saved without them.
///
/// A call that does not come back is given up, and the instance with it: its process is ended, when
/// it is known to be one that has been started for this object.
///
/// Releasing the object quits the application, if nobody has yet. Throws ErrorExcel.
std::unique_ptr<Application> nuevaAplicacionCom(bool porIdentificador,
                                                const Paciencia& paciencia = {});

}  // namespace bn::excel
