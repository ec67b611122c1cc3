// SPDX-License-Identifier: MIT
#include "tools/simulador/Pesadas.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <string_view>

#include "tools/simulador/Tramas.h"

namespace bn::simulador {

namespace {

constexpr std::size_t kAnchoMatricula = 8;
constexpr std::size_t kAnchoAlbaran = 7;
constexpr std::size_t kAnchoCodigo = 8;
constexpr std::size_t kAnchoPeso = 7;

std::string ala(const std::string& texto, std::size_t ancho, char relleno) {
    return texto.size() >= ancho ? texto : std::string(ancho - texto.size(), relleno) + texto;
}

std::string dosCifras(unsigned numero) { return ala(std::to_string(numero % 100), 2, '0'); }

}  // namespace

std::string Pesadas::siguiente() {
    for (;;) {
        std::string datos = componer();
        // A check character of code 13 ends the frame early each time it is sent: such a weighing
        // would never be downloaded, so none is made.
        if (control(datos) != kRetornoCarro) return datos;
    }
}

std::string Pesadas::componer() {
    minutos_ += azar_.entre(1, 25);
    const bool decimales = azar_.menorQue(4) == 0;
    std::string datos = matricula();
    datos += ' ' + albaran();
    for (int i = 0; i < 3; ++i) datos += ' ' + codigo();
    datos += ' ' + peso(azar_.entre(350, 17'500), decimales);
    const bool devolucion = azar_.menorQue(50) == 0;
    datos += ' ' + (devolucion ? peso(-azar_.entre(20, 900), false)
                               : peso(azar_.entre(0, 29'000), decimales));
    if (forma_ == Forma::kLarga) datos += ' ' + fechaHora();
    return datos;
}

std::string Pesadas::matricula() {
    static constexpr std::string_view kLetras = "BCDFGHJKLMNPRSTVWXYZ";
    static constexpr std::array<std::string_view, 6> kProvincias = {"M", "SE", "B", "V", "Z", "PO"};
    static constexpr std::array<std::string_view, 3> kForasteras = {
        "M\xDC-\xD1 12", "\xC5L\xD8 431", "\x80-77 \xE7"};
    const auto letras = [this](int cuantas) {
        std::string texto;
        for (int i = 0; i < cuantas; ++i) texto += kLetras[azar_.menorQue(kLetras.size())];
        return texto;
    };
    const std::string cifras = ala(std::to_string(azar_.entre(0, 9999)), 4, '0');
    const uint32_t clase = azar_.menorQue(100);
    std::string texto;
    if (clase < 70) {
        texto = cifras + letras(3);
    } else if (clase < 80) {
        texto = 'R' + cifras + letras(3);  // trailers
    } else if (clase < 92) {
        texto = std::string(kProvincias[azar_.menorQue(kProvincias.size())]) + cifras + letras(2);
    } else if (clase < 96) {
        texto = kForasteras[azar_.menorQue(kForasteras.size())];
    }
    texto.resize(kAnchoMatricula, ' ');
    return texto;
}

std::string Pesadas::albaran() {
    ++numeroAlbaran_;
    if (azar_.menorQue(12) == 0) return std::string(kAnchoAlbaran, ' ');
    const char relleno = azar_.menorQue(3) == 0 ? ' ' : '0';
    return ala(std::to_string(numeroAlbaran_ % 10'000'000), kAnchoAlbaran, relleno);
}

std::string Pesadas::codigo() {
    if (azar_.menorQue(8) == 0) return std::string(kAnchoCodigo, ' ');
    const int32_t mayor = azar_.menorQue(10) == 0 ? 99'999'999 : 2'500;
    return ala(std::to_string(azar_.entre(0, mayor)), kAnchoCodigo, '0');
}

std::string Pesadas::peso(int32_t kilos, bool decimales) {
    if (kilos < 0) return '-' + ala(std::to_string(-kilos), kAnchoPeso - 1, '0');
    if (!decimales)
        return ala(std::to_string(kilos), kAnchoPeso, azar_.menorQue(3) == 0 ? ' ' : '0');
    // One or two decimals: they have to leave room for the point.
    const bool dos = kilos < 10'000 && azar_.menorQue(2) == 0;
    const std::string parte =
        dos ? dosCifras(azar_.menorQue(100)) : std::to_string(azar_.menorQue(10));
    return ala(std::to_string(kilos) + '.' + parte, kAnchoPeso, '0');
}

std::string Pesadas::fechaHora() const {
    using namespace std::chrono;
    const sys_time<minutes> momento =
        sys_days{year{2024} / January / 8} + hours{6} + minutes{minutos_};
    const auto dia = floor<days>(momento);
    const year_month_day fecha{dia};
    const hh_mm_ss hora{momento - dia};
    return dosCifras(static_cast<unsigned>(fecha.day())) + '/' +
           dosCifras(static_cast<unsigned>(fecha.month())) + '/' +
           dosCifras(static_cast<unsigned>(static_cast<int>(fecha.year()))) + ' ' +
           dosCifras(static_cast<unsigned>(hora.hours().count())) + ':' +
           dosCifras(static_cast<unsigned>(hora.minutes().count()));
}

}  // namespace bn::simulador
