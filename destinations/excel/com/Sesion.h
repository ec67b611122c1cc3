// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "destinations/excel/com/ComPtr.h"
#include "destinations/excel/com/ExcelCom.h"
#include "destinations/excel/com/Proceso.h"
#include "destinations/excel/com/Vigilante.h"

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

/// What the objects of one application share. It lives as long as any of them, and begins before
/// the application is started.
class Sesion {
 public:
    explicit Sesion(const Paciencia& paciencia);

    const Paciencia& paciencia() const { return paciencia_; }
    /// Takes the process of the application's window for the one to be ended if need be.
    void reconocer(HWND ventana) { proceso_.reconocer(ventana); }

    /// Throws ErrorExcel once the application has ended, with the reason when it was not quit.
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
    /// that stays busy must not take the limit for every call of a road. Throws ErrorExcel when the
    /// call does not come back in time: the application has then ended.
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
    friend class Plazo;

    HRESULT llamarVigilada(const std::function<HRESULT()>& llamada);
    void cancelar();
    [[noreturn]] void darPorPerdida();

    Apartamento apartamento_;
    Paciencia paciencia_;
    std::chrono::milliseconds plazo_;
    ProcesoPropio proceso_;
    DWORD hilo_ = GetCurrentThreadId();
    std::atomic<bool> cancelada_ = false;
    bool procesoAcabado_ = false;
    std::string perdida_;  // why the application was given up; empty when it was not
    std::map<std::wstring, std::vector<DISPID>> identificadores_;
    std::shared_ptr<Pendiente> pendiente_;
    uint64_t epoca_ = 0;
    bool impaciente_ = false;
    bool despedida_ = false;
    bool viva_ = true;
    // The last one: its thread uses the others.
    Vigilante vigilante_;
};

/// Gives the calls made while it lives another time to come back; zero: as long as they like.
class Plazo {
 public:
    Plazo(Sesion& sesion, std::chrono::milliseconds plazo)
        : sesion_(sesion), anterior_(std::exchange(sesion.plazo_, plazo)) {}
    Plazo(const Plazo&) = delete;
    Plazo& operator=(const Plazo&) = delete;
    ~Plazo() { sesion_.plazo_ = anterior_; }

 private:
    Sesion& sesion_;
    std::chrono::milliseconds anterior_;
};

}  // namespace bn::excel::com
