// SPDX-License-Identifier: MIT
#include <algorithm>

#include "destinations/xls/Bytes.h"
#include "destinations/xls/Compuesto.h"
#include "destinations/xls/CompuestoComun.h"

namespace bn::xls {

using namespace compuesto;

/// Reads a compound file once, front to back of its structure: FAT, directory, streams.
class LectorCompuesto {
 public:
    explicit LectorCompuesto(std::string_view fichero) : fichero_(fichero) {}

    Compuesto leer() {
        leerCabecera();
        leerFat();
        const std::string directorio = cadena(fichero_.u32(cabecera::kDirectorio));
        for (size_t pos = 0; pos + kLargoEntrada <= directorio.size(); pos += kLargoEntrada) {
            compuesto_.entradas_.push_back({directorio.substr(pos, kLargoEntrada), {}});
        }
        if (compuesto_.entradas_.empty()) danado("no tiene directorio");
        leerFlujos();
        return std::move(compuesto_);
    }

 private:
    void leerCabecera() {
        const uint16_t potencia = fichero_.u16(cabecera::kPotenciaSector);
        const bool orden = fichero_.u16(cabecera::kOrdenBytes) == 0xFFFE;
        const bool minisector = fichero_.u16(cabecera::kPotenciaMinisector) == 6;
        if (!orden || !minisector || (potencia != 9 && potencia != 12)) {
            danado("su cabecera no es de un libro");
        }
        compuesto_.cabecera_ = fichero_.trozo(0, kLargoCabecera);
        tamano_ = size_t{1} << potencia;
        compuesto_.tamanoSector_ = tamano_;
        sectores_ = fichero_.size() / tamano_;
    }

    // The last sector of a file may have been written short; what is missing reads as zeros.
    std::string_view sector(uint32_t numero) const {
        const size_t inicio = (size_t{numero} + 1) * tamano_;
        if (numero >= kSectorDifat || inicio >= fichero_.size()) {
            danado("un sector está fuera del fichero");
        }
        return fichero_.trozo(inicio, std::min(tamano_, fichero_.size() - inicio));
    }

    Vista sectorEntero(uint32_t numero) const {
        const Vista bytes = sector(numero);
        if (bytes.size() < tamano_) danado("falta el final del fichero");
        return bytes;
    }

    void leerFat() {
        for (size_t i = 0; i < kFatEnCabecera; ++i) {
            anadirFat(fichero_.u32(cabecera::kListaFat + 4 * i));
        }
        size_t pasos = 0;
        for (uint32_t difat = fichero_.u32(cabecera::kDifat); difat < kSectorDifat;) {
            if (++pasos > sectores_) danado("una cadena de sectores no tiene fin");
            const Vista lista = sectorEntero(difat);
            for (size_t pos = 0; pos + 4 < tamano_; pos += 4) anadirFat(lista.u32(pos));
            difat = lista.u32(tamano_ - 4);
        }
    }

    void anadirFat(uint32_t numero) {
        if (numero >= kSectorDifat) return;
        if (fat_.size() > sectores_ + tamano_) danado("su tabla de sectores es demasiado larga");
        const Vista bytes = sectorEntero(numero);
        for (size_t pos = 0; pos < tamano_; pos += 4) fat_.push_back(bytes.u32(pos));
    }

    // Walks a chain to its end mark.
    std::string cadena(uint32_t numero) {
        std::string bytes;
        for (; numero < kSectorDifat; numero = siguiente(fat_, numero)) {
            bytes += sector(numero);
            ocupar(ocupados_, numero);
        }
        return bytes;
    }

    // A sector met twice means a chain in a circle, or two streams in one place.
    static void ocupar(std::vector<bool>& ocupados, uint32_t numero) {
        if (numero >= ocupados.size()) ocupados.resize(size_t{numero} + 1, false);
        if (ocupados[numero]) danado("dos cadenas de sectores se cruzan");
        ocupados[numero] = true;
    }

    // Walks a chain as far as the stream's size: some writers let one chain run on into another.
    std::string cadena(uint32_t numero, size_t tamano) {
        if (tamano > fichero_.size()) danado("un flujo dice ser mayor que el fichero");
        std::string bytes;
        bytes.reserve(tamano + tamano_);
        while (bytes.size() < tamano) {
            bytes += sector(numero);
            ocupar(ocupados_, numero);
            if (bytes.size() < tamano) {
                if (bytes.size() % tamano_ != 0) danado("falta el final del fichero");
                numero = siguiente(fat_, numero);
            }
        }
        bytes.resize(tamano);
        return bytes;
    }

    static uint32_t siguiente(const std::vector<uint32_t>& tabla, uint32_t numero) {
        if (numero >= tabla.size()) danado("una cadena de sectores está rota");
        return tabla[numero];
    }

    void leerFlujos() {
        const Vista raiz(compuesto_.entradas_[0].cruda);
        if (raiz.u8(entrada::kTipo) != entrada::kRaiz) danado("no tiene carpeta raíz");
        const size_t tamanoMini = raiz.u32(entrada::kTamano);
        if (tamanoMini != 0) mini_ = cadena(raiz.u32(entrada::kInicio), tamanoMini);
        const uint32_t minifat = fichero_.u32(cabecera::kMinifat);
        if (minifat < kSectorDifat && fichero_.u32(cabecera::kSectoresMinifat) != 0) {
            const std::string bytes = cadena(minifat);
            for (size_t pos = 0; pos + 4 <= bytes.size(); pos += 4) {
                minifat_.push_back(Vista(bytes).u32(pos));
            }
        }
        const size_t corte = fichero_.u32(cabecera::kCorte);
        for (Compuesto::Entrada& entrada : compuesto_.entradas_) {
            const Vista cruda(entrada.cruda);
            if (cruda.u8(entrada::kTipo) != entrada::kFlujo) continue;
            const size_t tamano = cruda.u32(entrada::kTamano);
            const uint32_t inicio = cruda.u32(entrada::kInicio);
            if (tamano == 0) continue;
            entrada.contenido =
                tamano >= corte ? cadena(inicio, tamano) : cadenaMini(inicio, tamano);
        }
    }

    std::string cadenaMini(uint32_t numero, size_t tamano) {
        if (tamano > mini_.size()) danado("un flujo dice ser mayor que el fichero");
        std::string bytes;
        while (bytes.size() < tamano) {
            const size_t inicio = size_t{numero} * kMinisector;
            if (numero >= kSectorDifat || inicio >= mini_.size()) {
                danado("una cadena de sectores está rota");
            }
            ocupar(miniocupados_, numero);
            const size_t falta = tamano - bytes.size();
            const size_t largo = std::min({kMinisector, falta, mini_.size() - inicio});
            bytes.append(mini_, inicio, largo);
            if (largo == falta) break;
            if (largo < kMinisector) danado("falta el final del fichero");
            numero = siguiente(minifat_, numero);
        }
        return bytes;
    }

    Vista fichero_;
    Compuesto compuesto_;
    size_t tamano_ = 0;
    size_t sectores_ = 0;
    std::vector<uint32_t> fat_;
    std::vector<uint32_t> minifat_;
    std::vector<bool> ocupados_;
    std::vector<bool> miniocupados_;
    std::string mini_;
};

Compuesto Compuesto::abrir(std::string_view fichero) {
    if (!loParece(fichero)) throw ErrorLibroDanado("El fichero no es un libro de Excel (.xls).");
    if (fichero.size() < 2 * kLargoCabecera) danado("falta el final del fichero");
    return LectorCompuesto(fichero).leer();
}

}  // namespace bn::xls
