// SPDX-License-Identifier: MIT
#include "destinations/xls/Cadenas.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <utility>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/Registros.h"
#include "destinations/xls/TextoBiff.h"

namespace bn::xls {
namespace {

constexpr uint8_t kAncha = 1;
constexpr uint8_t kFonetica = 4;
constexpr uint8_t kConFormatos = 8;
constexpr uint32_t kMaximoUnidades = 32767;
constexpr size_t kMaximoGrupos = 128;

// Walks the strings across the chunks, each of them one record's data.
class Cursor {
 public:
    Cursor(const std::vector<std::string>& trozos, size_t trozo, size_t pos)
        : trozos_(trozos), trozo_(trozo), pos_(pos) {}

    size_t trozo() const { return trozo_; }
    size_t posicion() const { return pos_; }
    bool alFinal() const { return trozo_ + 1 == trozos_.size() && pos_ == trozos_[trozo_].size(); }

    // Between two strings, and inside what follows the characters, a new record starts plainly.
    void saltarFinDeTrozo() {
        if (pos_ < trozos_[trozo_].size()) return;
        if (trozo_ + 1 >= trozos_.size()) danado("faltan textos en su tabla");
        ++trozo_;
        pos_ = 0;
    }

    // Reads past one string; texto, when given, receives its characters.
    void leerCadena(std::string* texto) {
        const Vista vista(trozos_[trozo_]);
        const uint16_t unidades = vista.u16(pos_);
        const uint8_t opciones = vista.u8(pos_ + 2);
        pos_ += 3;
        uint64_t cola = 0;
        if ((opciones & kConFormatos) != 0) {
            cola += uint64_t{4} * vista.u16(pos_);
            pos_ += 2;
        }
        if ((opciones & kFonetica) != 0) {
            cola += vista.u32(pos_);
            pos_ += 4;
        }
        leerCaracteres(unidades, (opciones & kAncha) != 0, texto);
        while (cola > 0) {
            saltarFinDeTrozo();
            const uint64_t paso = std::min<uint64_t>(cola, trozos_[trozo_].size() - pos_);
            pos_ += paso;
            cola -= paso;
        }
    }

 private:
    // Inside the characters a new record starts with an option byte that may change their width.
    void leerCaracteres(size_t faltan, bool ancho, std::string* texto) {
        std::string partido;  // a wide text's units so far: a pair may lie across two records
        while (faltan > 0) {
            if (pos_ >= trozos_[trozo_].size()) {
                saltarFinDeTrozo();
                ancho = (Vista(trozos_[trozo_]).u8(0) & kAncha) != 0;
                pos_ = 1;
            }
            const size_t porUnidad = ancho ? 2 : 1;
            const size_t caben = (trozos_[trozo_].size() - pos_) / porUnidad;
            const size_t toma = std::min(faltan, caben);
            if (toma == 0) danado("un texto de su tabla está partido");
            const std::string_view bytes =
                std::string_view(trozos_[trozo_]).substr(pos_, toma * porUnidad);
            if (texto != nullptr) reunir(*texto, partido, bytes, ancho, toma == faltan);
            pos_ += toma * porUnidad;
            faltan -= toma;
        }
    }

    static void reunir(std::string& texto, std::string& partido, std::string_view bytes, bool ancho,
                       bool ultimo) {
        if (partido.empty() && (ultimo || !ancho)) {
            anadirDeBiff(texto, bytes, ancho);
            return;
        }
        if (ancho) {
            partido += bytes;
        } else {
            for (const char c : bytes) poner16(partido, static_cast<unsigned char>(c));
        }
        if (ultimo) anadirDeBiff(texto, partido, true);
    }

    const std::vector<std::string>& trozos_;
    size_t trozo_;
    size_t pos_;
};

uint32_t resumenDe(std::string_view texto) {
    const size_t h = std::hash<std::string_view>{}(texto);
    return static_cast<uint32_t>(h ^ h >> 32);
}

}  // namespace

Cadenas::Cadenas() : trozos_{std::string(8, '\0')} {}

Cadenas::Cadenas(std::vector<std::string> trozos) : trozos_(std::move(trozos)) {
    if (trozos_.empty()) danado("no tiene tabla de textos");
    const Vista cabeza(trozos_[0]);
    usos_ = cabeza.u32(0);
    leer(cabeza.u32(4));
}

void Cadenas::leer(uint32_t cuantas) {
    Cursor cursor(trozos_, 0, 8);
    size_t bytes = 0;
    for (const std::string& trozo : trozos_) bytes += trozo.size();
    posiciones_.reserve(std::min<size_t>(cuantas, bytes / 3));
    for (uint32_t i = 0; i < cuantas; ++i) {
        cursor.saltarFinDeTrozo();
        posiciones_.push_back(
            {static_cast<uint32_t>(cursor.trozo()), static_cast<uint32_t>(cursor.posicion())});
        cursor.leerCadena(nullptr);
    }
    if (!cursor.alFinal()) danado("su tabla de textos no cuadra");
}

std::string Cadenas::texto(uint32_t numero) const {
    if (numero >= posiciones_.size()) danado("una celda pide un texto que no está");
    const Posicion posicion = posiciones_[numero];
    std::string texto;
    Cursor(trozos_, posicion.trozo, posicion.desplazamiento).leerCadena(&texto);
    return texto;
}

bool Cadenas::esSencilla(const Posicion& posicion) const {
    const auto opciones =
        static_cast<uint8_t>(trozos_[posicion.trozo][posicion.desplazamiento + 2]);
    return (opciones & (kFonetica | kConFormatos)) == 0;
}

void Cadenas::indexar() {
    tabla_.assign(std::bit_ceil(std::max<size_t>(64, posiciones_.size() * 2)), {});
    for (uint32_t i = 0; i < posiciones_.size(); ++i) {
        if (!esSencilla(posiciones_[i])) continue;
        const std::string utf8 = texto(i);
        const uint32_t resumen = resumenDe(utf8);
        bool encontrada = false;
        const size_t hueco = huecoDe(resumen, utf8, encontrada);
        if (encontrada) continue;
        tabla_[hueco] = {resumen, i + 1};
        ++enTabla_;
    }
}

void Cadenas::crecerTabla() {
    std::vector<Hueco> vieja(tabla_.size() * 2);
    vieja.swap(tabla_);
    for (const Hueco& lleno : vieja) {
        if (lleno.numero == 0) continue;
        size_t i = lleno.resumen & (tabla_.size() - 1);
        while (tabla_[i].numero != 0) i = (i + 1) & (tabla_.size() - 1);
        tabla_[i] = lleno;
    }
}

size_t Cadenas::huecoDe(uint32_t resumen, std::string_view utf8, bool& encontrada) const {
    size_t i = resumen & (tabla_.size() - 1);
    while (tabla_[i].numero != 0) {
        if (tabla_[i].resumen == resumen && texto(tabla_[i].numero - 1) == utf8) {
            encontrada = true;
            return i;
        }
        i = (i + 1) & (tabla_.size() - 1);
    }
    return i;
}

uint32_t Cadenas::agregar(std::string_view utf8) {
    if (tabla_.empty()) indexar();
    const uint32_t resumen = resumenDe(utf8);
    bool encontrada = false;
    const size_t hueco = huecoDe(resumen, utf8, encontrada);
    if (encontrada) return tabla_[hueco].numero - 1;
    escribir(utf8);
    cambiada_ = true;
    tabla_[hueco] = {resumen, cuantas()};
    if (++enTabla_ * 2 > tabla_.size()) crecerTabla();
    return cuantas() - 1;
}

void Cadenas::contarUso(int cambio) {
    usos_ += static_cast<uint32_t>(cambio);
    cambiada_ = true;
}

// A head and its first character never lie in two records, nor does a 16-bit unit.
void Cadenas::escribir(std::string_view utf8) {
    const TextoBiff texto = aBiff(utf8);
    if (texto.unidades > kMaximoUnidades) {
        rechazar("Un texto de más de 32.767 caracteres no cabe en una celda.");
    }
    const size_t porUnidad = texto.ancho ? 2 : 1;
    if (kMaximoDatos - trozos_.back().size() < 3 + porUnidad) trozos_.emplace_back();
    posiciones_.push_back(
        {static_cast<uint32_t>(trozos_.size() - 1), static_cast<uint32_t>(trozos_.back().size())});
    poner16(trozos_.back(), texto.unidades);
    poner8(trozos_.back(), texto.ancho ? kAncha : 0);
    std::string_view quedan = texto.bytes;
    while (true) {
        const size_t sitio = (kMaximoDatos - trozos_.back().size()) / porUnidad * porUnidad;
        trozos_.back() += quedan.substr(0, sitio);
        if (quedan.size() <= sitio) return;
        quedan.remove_prefix(sitio);
        trozos_.emplace_back(1, static_cast<char>(texto.ancho ? kAncha : 0));
    }
}

void Cadenas::serializar(std::string& flujo) const {
    for (size_t i = 0; i < trozos_.size(); ++i) {
        const size_t datos = flujo.size() + 4;
        ponerRegistro(flujo, i == 0 ? id::kSst : id::kContinue, trozos_[i]);
        if (i == 0) {
            cambiar32(flujo, datos, usos_);
            cambiar32(flujo, datos + 4, cuantas());
        }
    }
}

std::string Cadenas::indice(size_t posicionSst, uint32_t cadenasPorGrupo) const {
    const size_t total = posiciones_.size();
    size_t porGrupo = cadenasPorGrupo;
    if (porGrupo == 0 || (total + porGrupo - 1) / porGrupo > kMaximoGrupos) {
        porGrupo = std::max<size_t>(8, total / kMaximoGrupos + 1);
    }
    std::vector<size_t> inicios;
    size_t inicio = posicionSst;
    for (const std::string& trozo : trozos_) {
        inicios.push_back(inicio);
        inicio += 4 + trozo.size();
    }
    std::string datos;
    poner16(datos, static_cast<uint32_t>(porGrupo));
    for (size_t i = 0; i < total; i += porGrupo) {
        const size_t enRegistro = 4 + size_t{posiciones_[i].desplazamiento};
        poner32(datos, static_cast<uint32_t>(inicios[posiciones_[i].trozo] + enRegistro));
        poner16(datos, static_cast<uint32_t>(enRegistro));
        poner16(datos, 0);
    }
    return datos;
}

}  // namespace bn::xls
