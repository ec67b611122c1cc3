// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>
#include <QObject>
#include <functional>

namespace bn {

/// Lets only digits and the editing keys into a text box, while activo says so.
class TeclasNumericas : public QObject {
 public:
    explicit TeclasNumericas(QLineEdit& caja, std::function<bool()> activo = {});

    bool eventFilter(QObject* objeto, QEvent* evento) override;

 private:
    std::function<bool()> activo_;
};

}  // namespace bn
