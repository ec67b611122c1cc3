// SPDX-License-Identifier: MIT
#pragma once

#include <QTranslator>

namespace bn {

/// The toolkit's own texts in Spanish: context menus of fields, file dialogs, standard buttons.
/// Kept here, so that they need no file beside the program.
class TextosDeQt : public QTranslator {
 public:
    using QTranslator::QTranslator;

    QString translate(const char* contexto, const char* original, const char* aclaracion,
                      int numero) const override;
    bool isEmpty() const override { return false; }
};

}  // namespace bn
