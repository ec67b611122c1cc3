// SPDX-License-Identifier: MIT
#include <algorithm>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/Compuesto.h"
#include "destinations/xls/CompuestoComun.h"

namespace bn::xls {

using namespace compuesto;

/// Lays a whole compound file out anew: streams, mini stream, mini FAT, directory, FAT, DIFAT.
class EscritorCompuesto {
 public:
    explicit EscritorCompuesto(const Compuesto& compuesto)
        : compuesto_(compuesto), tamano_(compuesto.tamanoSector_), porSector_(tamano_ / 4) {}

    std::string escribir() {
        cabecera_ = compuesto_.cabecera_;
        size_t total = 0;
        for (const auto& entrada : compuesto_.entradas_) total += entrada.contenido.size();
        salida_.reserve(total + total / 64 + 16 * tamano_);
        salida_.assign(tamano_, '\0');
        escribirFlujos();
        escribirMini();
        escribirDirectorio();
        escribirFat();
        salida_.replace(0, kLargoCabecera, cabecera_);
        return std::move(salida_);
    }

 private:
    uint32_t sectoresEscritos() const { return static_cast<uint32_t>(fat_.size()); }

    // Appends whole sectors and chains them; gives the first one's number.
    uint32_t poner(std::string_view bytes, char relleno = '\0') {
        if (bytes.empty()) return kFinCadena;
        const uint32_t primero = sectoresEscritos();
        salida_ += bytes;
        const size_t sobra = bytes.size() % tamano_;
        if (sobra != 0) salida_.append(tamano_ - sobra, relleno);
        const size_t sectores = (bytes.size() + tamano_ - 1) / tamano_;
        for (size_t i = 1; i < sectores; ++i) fat_.push_back(sectoresEscritos() + 1);
        fat_.push_back(kFinCadena);
        return primero;
    }

    void escribirFlujos() {
        for (const auto& entrada : compuesto_.entradas_) {
            std::string cruda = entrada.cruda;
            if (Vista(cruda).u8(entrada::kTipo) == entrada::kFlujo) {
                const std::string& bytes = entrada.contenido;
                const uint32_t inicio = bytes.size() >= kCorte ? poner(bytes) : ponerMini(bytes);
                cambiar32(cruda, entrada::kInicio, inicio);
                cambiar32(cruda, entrada::kTamano, static_cast<uint32_t>(bytes.size()));
            }
            directorio_ += cruda;
        }
    }

    uint32_t ponerMini(const std::string& bytes) {
        if (bytes.empty()) return kFinCadena;
        const auto primero = static_cast<uint32_t>(minifat_.size());
        mini_ += bytes;
        mini_.resize((mini_.size() + kMinisector - 1) / kMinisector * kMinisector, '\0');
        while (minifat_.size() < mini_.size() / kMinisector) {
            minifat_.push_back(static_cast<uint32_t>(minifat_.size() + 1));
        }
        minifat_.back() = kFinCadena;
        return primero;
    }

    void escribirMini() {
        cambiar32(directorio_, entrada::kInicio, poner(mini_));
        cambiar32(directorio_, entrada::kTamano, static_cast<uint32_t>(mini_.size()));
        std::string tabla;
        for (const uint32_t numero : minifat_) poner32(tabla, numero);
        const uint32_t antes = sectoresEscritos();
        cambiar32(cabecera_, cabecera::kMinifat, poner(tabla, '\xFF'));
        cambiar32(cabecera_, cabecera::kSectoresMinifat, sectoresEscritos() - antes);
        cambiar32(cabecera_, cabecera::kCorte, kCorte);
    }

    void escribirDirectorio() {
        // Every place of the last sector must be an entry, though an unused one.
        while (directorio_.size() % tamano_ != 0) {
            std::string hueco(kLargoEntrada, '\0');
            for (const size_t pos : {entrada::kIzquierda, entrada::kDerecha, entrada::kHijo}) {
                cambiar32(hueco, pos, kNinguna);
            }
            directorio_ += hueco;
        }
        const uint32_t antes = sectoresEscritos();
        cambiar32(cabecera_, cabecera::kDirectorio, poner(directorio_));
        const bool cuenta = tamano_ != 512;
        cambiar32(cabecera_, cabecera::kSectoresDirectorio,
                  cuenta ? sectoresEscritos() - antes : 0);
    }

    // The FAT describes its own sectors too, so how many it needs is found by growing.
    void escribirFat() {
        const size_t base = fat_.size();
        size_t sectoresFat = 0;
        size_t sectoresDifat = 0;
        for (bool crece = true; crece;) {
            const size_t total = base + sectoresFat + sectoresDifat;
            const size_t hacenFalta = (total + porSector_ - 1) / porSector_;
            const size_t fuera = hacenFalta > kFatEnCabecera ? hacenFalta - kFatEnCabecera : 0;
            const size_t difat = (fuera + porSector_ - 2) / (porSector_ - 1);
            crece = hacenFalta != sectoresFat || difat != sectoresDifat;
            sectoresFat = hacenFalta;
            sectoresDifat = difat;
        }
        fat_.insert(fat_.end(), sectoresFat, kSectorFat);
        fat_.insert(fat_.end(), sectoresDifat, kSectorDifat);
        fat_.resize(sectoresFat * porSector_, kLibre);
        for (const uint32_t numero : fat_) poner32(salida_, numero);
        cambiar32(cabecera_, cabecera::kSectoresFat, static_cast<uint32_t>(sectoresFat));
        for (size_t i = 0; i < kFatEnCabecera; ++i) {
            const size_t numero = i < sectoresFat ? base + i : kLibre;
            cambiar32(cabecera_, cabecera::kListaFat + 4 * i, static_cast<uint32_t>(numero));
        }
        escribirDifat(base, sectoresFat, sectoresDifat);
    }

    void escribirDifat(size_t base, size_t sectoresFat, size_t sectoresDifat) {
        const size_t primero = base + sectoresFat;
        cambiar32(cabecera_, cabecera::kDifat,
                  sectoresDifat == 0 ? kFinCadena : static_cast<uint32_t>(primero));
        cambiar32(cabecera_, cabecera::kSectoresDifat, static_cast<uint32_t>(sectoresDifat));
        size_t siguienteFat = kFatEnCabecera;
        for (size_t i = 0; i < sectoresDifat; ++i) {
            for (size_t j = 1; j < porSector_; ++j, ++siguienteFat) {
                const size_t numero = siguienteFat < sectoresFat ? base + siguienteFat : kLibre;
                poner32(salida_, static_cast<uint32_t>(numero));
            }
            const bool ultimo = i + 1 == sectoresDifat;
            poner32(salida_, ultimo ? kFinCadena : static_cast<uint32_t>(primero + i + 1));
        }
    }

    const Compuesto& compuesto_;
    size_t tamano_;
    size_t porSector_;
    std::string cabecera_;
    std::string salida_;
    std::string directorio_;
    std::string mini_;
    std::vector<uint32_t> fat_;
    std::vector<uint32_t> minifat_;
};

std::string Compuesto::serializar() const { return EscritorCompuesto(*this).escribir(); }

}  // namespace bn::xls
