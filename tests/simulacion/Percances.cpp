// SPDX-License-Identifier: MIT
#include "tests/simulacion/Percances.h"

#include <array>
#include <chrono>
#include <iterator>
#include <utility>

namespace bn::prueba {

namespace {

using Causa = ErrorFichero::Causa;
using Tipo = Operacion::Tipo;

constexpr std::array kCausas = {Causa::kLleno, Causa::kSinPermiso, Causa::kAveria,
                                Causa::kEnUso, Causa::kOtra,       Causa::kSoloLectura};
constexpr std::array kMomentos = {Momento::kAntes, Momento::kAMedias, Momento::kDespues};

bool escribeOVuelca(Tipo tipo) {
    return tipo == Tipo::kEscribir || tipo == Tipo::kAnadir || tipo == Tipo::kVolcar ||
           tipo == Tipo::kCortar;
}

bool esDeNombres(Tipo tipo) {
    return tipo == Tipo::kNuevo || tipo == Tipo::kRenombrar || tipo == Tipo::kBorrar ||
           tipo == Tipo::kVolcarCarpeta;
}

template <class Serie>
auto uno(Azar& azar, const Serie& serie) {
    return serie.at(static_cast<std::size_t>(azar.entre(0, std::ssize(serie) - 1)));
}

}  // namespace

Percances::Percances(Azar& azar, DiscoSimulado& disco, PlataformaDelMundo& plataforma,
                     Apuntar apuntar)
    : azar_(azar), disco_(disco), plataforma_(plataforma), apuntar_(std::move(apuntar)) {
    plataforma_.excel.alLlamar = [this](const std::string& llamada) { alLlamar(llamada); };
    plataforma_.excel.alGuardar = [this](const std::string& guardado) { alGuardar(guardado); };
}

void Percances::sortear() {
    sanar();
    for (int64_t i = azar_.sale(0.5) ? azar_.entre(1, 3) : 0; i > 0; --i) averiarDisco();
    if (azar_.sale(0.1)) {
        uint64_t ocupado = 0;
        for (const auto& carpeta : {programa, oficina}) {
            for (const auto& nombre : disco_.nombres(carpeta)) {
                ocupado += disco_.contenido(carpeta / nombre).size();
            }
        }
        const auto libre = static_cast<uint64_t>(azar_.entre(0, 12000));
        disco_.capacidad(ocupado + libre);
        apuntar_("quedan " + std::to_string(libre) + " bytes libres");
    }
    if (azar_.sale(0.15)) {
        escondida_ = true;
        disco_.esconder(oficina);
        apuntar_("la carpeta de los destinos desaparece");
    }
    if (azar_.sale(0.1)) {
        const std::array<std::filesystem::path, 4> tomables = {
            lineas, libro, programa / "bnGuardo.txt", programa / "bnGuardo.nota"};
        disco_.retener(uno(azar_, tomables), std::chrono::milliseconds(azar_.entre(10, 600)));
    }
    if (plataforma_.conExcel && azar_.sale(0.4)) averiarExcel();
}

void Percances::averiarDisco() {
    const int64_t clase = azar_.entre(0, 3);  // any, writing, names, one type
    const auto tipo = static_cast<Tipo>(azar_.entre(0, 14));
    const int64_t donde = azar_.entre(0, 2);
    const int64_t desde = disco_.operaciones() + azar_.entre(1, 400);
    const int64_t hasta = azar_.sale(0.5) ? desde + azar_.entre(0, 60) : desde + 100'000;
    const int veces =
        azar_.sale(0.3) ? DiscoSimulado::kSiempre : static_cast<int>(azar_.entre(1, 3));
    const std::string carpeta = ficheros::aTexto(donde == 0 ? programa : oficina);
    const Causa causa = uno(azar_, kCausas);
    const auto afectada = [=, this](const Operacion& operacion) {
        const bool deLaClase = clase == 0 || (clase == 1 && escribeOVuelca(operacion.tipo)) ||
                               (clase == 2 && esDeNombres(operacion.tipo)) ||
                               (clase == 3 && operacion.tipo == tipo);
        const bool ahi = donde == 2 || ficheros::aTexto(operacion.ruta).starts_with(carpeta);
        const bool si = deLaClase && ahi && operacion.numero >= desde && operacion.numero <= hasta;
        if (!si) return false;
        ++deDisco;
        apuntar_("    falla (" + std::to_string(static_cast<int>(causa)) + ") " +
                 operacion.texto());
        return true;
    };
    // What somebody else holds has not been touched: whoever meets that tries again.
    const Momento momento = uno(azar_, kMomentos);
    disco_.fallar(causa, afectada, veces, causa == Causa::kEnUso ? Momento::kAntes : momento);
}

void Percances::averiarExcel() {
    if (azar_.sale(0.2)) {
        plataforma_.excel.errorAlArrancar = "El servidor no responde";
        apuntar_("Excel no arranca");
        return;
    }
    excelFalla_ = static_cast<double>(azar_.entre(1, 20)) / 1000;
    guardadoFalla_ = azar_.sale(0.5) ? 0.5 : 0;
    apuntar_("Excel falla a veces");
}

void Percances::sanar() {
    disco_.sanar();
    escondida_ = false;
    plataforma_.excel.errorAlArrancar.clear();
    plataforma_.excel.olvidar();
    excelFalla_ = guardadoFalla_ = 0;
    llamadasHastaMorir_ = envioFatal_ = 0;
    disco_.morirEn(0);
}

void Percances::sortearMuerte() {
    corte_ = azar_.sale(0.5);
    switch (azar_.entre(0, 5)) {
        case 0:
            envioFatal_ = azar_.entre(1, 12);
            return;
        case 1:
            llamadasHastaMorir_ = azar_.entre(1, 200);
            return;
        default:
            disco_.morirEn(disco_.operaciones() + azar_.entre(1, 400), uno(azar_, kMomentos));
    }
}

void Percances::alTransmitir() {
    if (!disco_.vivo()) throw MuerteSubita{};
    if (envioFatal_ == 0 || --envioFatal_ > 0) return;
    disco_.morir();
    throw MuerteSubita{};
}

void Percances::alLlamar(const std::string& llamada) {
    // What quits an application runs on the way out of one death already, or in a destructor.
    if (llamada.find(".Quit") == std::string::npos) {
        if (!disco_.vivo()) throw MuerteSubita{};
        if (llamadasHastaMorir_ > 0 && --llamadasHastaMorir_ == 0) {
            disco_.morir();
            throw MuerteSubita{};
        }
    }
    const bool abre = llamada.find(".Open ") != std::string::npos;
    const bool guarda = llamada.find(".SaveAs ") != std::string::npos;
    if ((!escondida_ || !(abre || guarda)) && !azar_.sale(excelFalla_)) return;
    ++deExcel;
    apuntar_("    falla Excel: " + llamada);
    // One that does not quit is ended below.
    if (llamada.find(".Quit") != std::string::npos) --plataforma_.excel.instanciasAbiertas;
    throw excel::ErrorExcel("Excel no puede: " + llamada);
}

/// It has happened, but who asked may not hear of it.
void Percances::alGuardar(const std::string& guardado) {
    apuntar_("    Excel guarda " + guardado);
    if (!disco_.existe(guardado)) disco_.poner(guardado, "libro");
    if (!azar_.sale(guardadoFalla_)) return;
    ++deExcel;
    apuntar_("    falla Excel después de guardar");
    throw excel::ErrorExcel("Excel no responde");
}

}  // namespace bn::prueba
