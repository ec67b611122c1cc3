// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "destinations/excel/com/ComPtr.h"
#include "destinations/excel/com/ExcelCom.h"

namespace bn::excel::com {

/// The thread's single-threaded apartment, for as long as the object lives.
class Apartamento {
 public:
    Apartamento();
    Apartamento(const Apartamento&) = delete;
    Apartamento& operator=(const Apartamento&) = delete;
    ~Apartamento();

 private:
    HRESULT resultado_;
};

/// Something that has yet to be told to the application.
class Pendiente {
 public:
    Pendiente() = default;
    Pendiente(const Pendiente&) = delete;
    Pendiente& operator=(const Pendiente&) = delete;
    virtual ~Pendiente() = default;

    /// Tells it. What fails stays pending.
    virtual void vaciar() = 0;
};

/// What the objects of one application share. It lives as long as any of them.
class Sesion {
 public:
    explicit Sesion(const Paciencia& paciencia) : paciencia_(paciencia) {}

    /// Throws ErrorExcel once the application has ended.
    void exigirViva() const;
    /// To be called before every call that may see or change cells: what is pending goes first.
    void antesDeLlamar();
    /// The only one that may stay pending from now on: anything else is told first.
    void dejarPendiente(const std::shared_ptr<Pendiente>& pendiente);
    /// Tells the application what is pending.
    void vaciar();
    /// The application has ended, and with it what was pending.
    void terminar();

    /// Grows whenever cells may have changed.
    uint64_t epoca() const { return epoca_; }

    /// Calls again while the application is busy, up to the limit; the last result. Once the limit
    /// has been reached nothing is called twice, until a member has been attended: an application
    /// that stays busy must not take the limit for every call of a road.
    HRESULT insistir(const std::function<HRESULT()>& llamada);
    /// To be called when a member has been attended.
    void haAtendido() { impaciente_ = false; }
    /// To be called before the application is told to quit, which is worth the whole patience once
    /// more, and only once: a process left behind would stay.
    void antesDeDespedir() {
        if (!std::exchange(despedida_, true)) impaciente_ = false;
    }

    /// Identifiers of a member and its arguments, asked once for each kind of object.
    std::map<std::wstring, std::vector<DISPID>>& identificadores() { return identificadores_; }

 private:
    Apartamento apartamento_;
    Paciencia paciencia_;
    std::map<std::wstring, std::vector<DISPID>> identificadores_;
    std::shared_ptr<Pendiente> pendiente_;
    uint64_t epoca_ = 0;
    bool impaciente_ = false;
    bool despedida_ = false;
    bool viva_ = true;
};

}  // namespace bn::excel::com
