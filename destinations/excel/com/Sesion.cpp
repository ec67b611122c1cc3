// SPDX-License-Identifier: MIT
#include "destinations/excel/com/Sesion.h"

#include <algorithm>
#include <thread>

#include "destinations/excel/com/ErrorCom.h"
#include "destinations/excel/com/EsperaDeLlamada.h"

namespace bn::excel::com {

namespace {

std::string enPalabras(std::chrono::milliseconds plazo) {
    const auto segundos = std::chrono::ceil<std::chrono::seconds>(plazo).count();
    if (segundos > 60 && segundos % 60 == 0) return std::to_string(segundos / 60) + " minutos";
    return std::to_string(segundos) + " segundos";
}

/// Ends the watch over a call however the call ends.
struct Vigilancia {
    Vigilante& vigilante;
    bool& vencida;

    Vigilancia(Vigilante& quien, std::chrono::milliseconds plazo, bool& seVencio)
        : vigilante(quien), vencida(seVencio) {
        vigilante.armar(plazo);
    }
    Vigilancia(const Vigilancia&) = delete;
    Vigilancia& operator=(const Vigilancia&) = delete;
    ~Vigilancia() { vencida = vigilante.desarmar(); }
};

}  // namespace

Apartamento::Apartamento() : resultado_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {
    exigirExito(resultado_);
}

Apartamento::~Apartamento() { CoUninitialize(); }

Sesion::Sesion(const Paciencia& paciencia)
    : paciencia_(paciencia), plazo_(paciencia.llamada), vigilante_([this] { cancelar(); }) {}

void Sesion::exigirViva() const {
    if (!perdida_.empty()) throw ErrorExcel(perdida_);
    if (!viva_) throw ErrorExcel("La hoja de cálculo ya está cerrada");
}

void Sesion::antesDeLlamar() {
    exigirViva();
    vaciar();
    ++epoca_;
}

void Sesion::dejarPendiente(const std::shared_ptr<Pendiente>& pendiente) {
    if (pendiente_ == pendiente) return;
    vaciar();
    pendiente_ = pendiente;
}

void Sesion::vaciar() {
    if (!pendiente_) return;
    ++epoca_;
    // Nobody else may hold it, and a call of its own may end the session.
    const std::shared_ptr<Pendiente> pendiente = pendiente_;
    pendiente->vaciar();
    pendiente_.reset();
}

void Sesion::terminar() {
    viva_ = false;
    pendiente_.reset();
}

HRESULT Sesion::insistir(const std::function<HRESULT()>& llamada) {
    using Reloj = std::chrono::steady_clock;
    const Reloj::time_point fin = Reloj::now() + paciencia_.limite;
    for (std::chrono::milliseconds pausa = paciencia_.pausaMinima;;
         pausa = std::min(pausa * 2, paciencia_.pausaMaxima)) {
        const HRESULT resultado = llamarVigilada(llamada);
        if (!estaOcupada(resultado)) return resultado;
        impaciente_ = impaciente_ || Reloj::now() + pausa > fin;
        if (impaciente_) return resultado;
        std::this_thread::sleep_for(pausa);
    }
}

HRESULT Sesion::llamarVigilada(const std::function<HRESULT()>& llamada) {
    HRESULT resultado = S_OK;
    bool vencida = false;
    {
        const EsperaDeLlamada espera(cancelada_);
        const Vigilancia vigilancia(vigilante_, plazo_, vencida);
        resultado = llamada();
    }
    if (vencida) darPorPerdida();
    return resultado;
}

/// In the watching thread. The application may never answer again: the end of its process ends the
/// call that waits for it, also where the cancelling of a call is not heard.
void Sesion::cancelar() {
    cancelada_ = true;
    PostThreadMessageW(hilo_, WM_NULL, 0, 0);  // for EsperaDeLlamada to be asked
    procesoAcabado_ = proceso_.acabar();
}

void Sesion::darPorPerdida() {
    perdida_ = "Excel no ha respondido en " + enPalabras(plazo_) +
               ": quizá esperaba la respuesta a una pregunta que no se ve. Se ha cancelado lo que "
               "se le había pedido y ";
    perdida_ += procesoAcabado_ ? "se ha cerrado el Excel que este programa había abierto; ningún "
                                  "otro se ha tocado."
                                : "se ha dejado de usar; no se ha podido cerrar.";
    terminar();
    exigirViva();
    lanzarError(RPC_E_CALL_CANCELED);
}

}  // namespace bn::excel::com
