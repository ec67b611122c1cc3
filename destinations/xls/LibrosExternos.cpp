// SPDX-License-Identifier: MIT
#include "destinations/xls/LibrosExternos.h"

#include <algorithm>
#include <string_view>

#include "destinations/xls/Bytes.h"

namespace bn::xls {
namespace {

constexpr size_t kLargoXti = 6;
constexpr size_t kXtiPorRegistro = (kMaximoDatos - 2) / kLargoXti;
constexpr size_t kMaximoXti = 0xFFFF;

bool esPropio(const Registro& registro) {
    constexpr std::string_view kMarca{"\x01\x04", 2};
    return registro.id == id::kSupBook && registro.datos.size() == 4 &&
           std::string_view(registro.datos).substr(2) == kMarca;
}

Registro libroPropio(size_t cuantasHojas) {
    Registro registro{id::kSupBook, {}};
    poner16(registro.datos, static_cast<uint32_t>(cuantasHojas));
    poner16(registro.datos, 0x0401);
    return registro;
}

}  // namespace

LibrosExternos::LibrosExternos(Registros& globales) : globales_(globales) {
    uint16_t cual = 0;
    for (const Registro& registro : globales_) {
        if (registro.id != id::kSupBook) continue;
        if (esPropio(registro) && !propio_) propio_ = cual;
        ++cual;
    }
    const size_t lugar = buscarRegistro(globales_, id::kExternSheet);
    if (lugar == globales_.size()) return;
    std::string datos = globales_[lugar].datos;
    for (size_t i = lugar + 1; i < globales_.size() && globales_[i].id == id::kContinue; ++i) {
        datos += globales_[i].datos;
    }
    const Vista vista(datos);
    const uint16_t cuantos = vista.u16(0);
    for (size_t i = 0; i < cuantos; ++i) {
        const size_t pos = 2 + kLargoXti * i;
        lista_.push_back({vista.u16(pos), static_cast<int16_t>(vista.u16(pos + 2)),
                          static_cast<int16_t>(vista.u16(pos + 4))});
    }
}

std::optional<std::pair<int32_t, int32_t>> LibrosExternos::hojas(uint16_t xti) const {
    if (xti >= lista_.size() || !propio_) return std::nullopt;
    const Xti& entrada = lista_[xti];
    if (entrada.libro != *propio_ || entrada.primera < 0 || entrada.ultima < entrada.primera) {
        return std::nullopt;
    }
    return std::pair<int32_t, int32_t>(entrada.primera, entrada.ultima);
}

uint16_t LibrosExternos::xti(int32_t primera, int32_t ultima, size_t cuantasHojas) {
    if (!propio_) crearLibroPropio(cuantasHojas);
    const auto igual = std::find_if(lista_.begin(), lista_.end(), [&](const Xti& entrada) {
        return entrada.libro == *propio_ && entrada.primera == primera && entrada.ultima == ultima;
    });
    if (igual != lista_.end()) return static_cast<uint16_t>(igual - lista_.begin());
    if (lista_.size() >= kMaximoXti) rechazar("El libro tiene demasiadas referencias a hojas.");
    lista_.push_back({*propio_, static_cast<int16_t>(primera), static_cast<int16_t>(ultima)});
    reescribir();
    return static_cast<uint16_t>(lista_.size() - 1);
}

// Behind the other workbooks, whose numbers must not change, and before the list of sheets.
void LibrosExternos::crearLibroPropio(size_t cuantasHojas) {
    const auto cuantos = std::count_if(globales_.begin(), globales_.end(),
                                       [](const Registro& r) { return r.id == id::kSupBook; });
    propio_ = static_cast<uint16_t>(cuantos);
    size_t lugar = buscarRegistro(globales_, id::kExternSheet);
    if (lugar == globales_.size()) {
        lugar = trasUltimo(globales_, {id::kSupBook, id::kCountry, id::kBoundSheet}).value_or(1);
        globales_.insert(globales_.begin() + static_cast<ptrdiff_t>(lugar),
                         Registro{id::kExternSheet, std::string(2, '\0')});
    }
    globales_.insert(globales_.begin() + static_cast<ptrdiff_t>(lugar), libroPropio(cuantasHojas));
}

void LibrosExternos::reescribir() {
    const size_t lugar = buscarRegistro(globales_, id::kExternSheet);
    if (lugar == globales_.size()) return;
    size_t fin = lugar + 1;
    while (fin < globales_.size() && globales_[fin].id == id::kContinue) ++fin;
    Registros nuevos{{id::kExternSheet, {}}};
    poner16(nuevos[0].datos, static_cast<uint32_t>(lista_.size()));
    for (size_t i = 0; i < lista_.size(); ++i) {
        if (i > 0 && i % kXtiPorRegistro == 0) nuevos.push_back({id::kContinue, {}});
        poner16(nuevos.back().datos, lista_[i].libro);
        poner16(nuevos.back().datos, static_cast<uint16_t>(lista_[i].primera));
        poner16(nuevos.back().datos, static_cast<uint16_t>(lista_[i].ultima));
    }
    const auto desde = globales_.begin() + static_cast<ptrdiff_t>(lugar);
    const auto hueco = globales_.erase(desde, globales_.begin() + static_cast<ptrdiff_t>(fin));
    globales_.insert(hueco, nuevos.begin(), nuevos.end());
}

void LibrosExternos::remapear(const std::vector<int32_t>& nuevos, size_t cuantasHojas) {
    for (Registro& registro : globales_) {
        if (esPropio(registro)) registro = libroPropio(cuantasHojas);
    }
    if (!propio_) return;
    for (Xti& entrada : lista_) {
        if (entrada.libro != *propio_ || entrada.primera < 0) continue;
        int16_t primera = -1;
        int16_t ultima = -1;
        for (int32_t i = entrada.primera; i <= entrada.ultima; ++i) {
            if (static_cast<size_t>(i) >= nuevos.size()) break;
            const auto nuevo = static_cast<int16_t>(nuevos[static_cast<size_t>(i)]);
            if (nuevo < 0) continue;
            if (primera < 0) primera = nuevo;
            ultima = nuevo;
        }
        entrada.primera = primera;
        entrada.ultima = ultima;
    }
    reescribir();
}

}  // namespace bn::xls
