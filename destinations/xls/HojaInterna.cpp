// SPDX-License-Identifier: MIT
#include "destinations/xls/HojaInterna.h"

#include <utility>

#include "destinations/xls/Disposicion.h"
#include "destinations/xls/Edicion.h"
#include "destinations/xls/Errores.h"
#include "destinations/xls/Hojas.h"
#include "destinations/xls/LibroInterno.h"
#include "destinations/xls/RangoInterno.h"

namespace bn::xls {
namespace {

constexpr const char* kSinImpresora =
    "El motor interno no puede imprimir: ábralo con Excel u otro programa para imprimirlo.";

class SaltosInternos final : public excel::HPageBreaks {
 public:
    explicit SaltosInternos(std::weak_ptr<Hoja> hoja) : hoja_(std::move(hoja)) {}

    void Add(excel::Range& before) override {
        const std::shared_ptr<Hoja> hoja = exigirHoja(hoja_);
        const auto* rango = dynamic_cast<const RangoInterno*>(&before);
        if (rango == nullptr || rango->hoja().lock() != hoja) {
            rechazar("El salto de página ha de ir en una fila de la misma hoja.");
        }
        saltoDePagina(*hoja, rango->area().fila0);
    }

 private:
    std::weak_ptr<Hoja> hoja_;
};

}  // namespace

std::unique_ptr<excel::Range> HojaInterna::rango(const Area& area) {
    exigirHoja(hoja_);
    return std::make_unique<RangoInterno>(sesion_, hoja_, area);
}

std::string HojaInterna::Name() { return exigirHoja(hoja_)->nombre; }

void HojaInterna::Name(const std::string& nombre) { renombrarHoja(*exigirHoja(hoja_), nombre); }

void HojaInterna::Delete() { borrarHoja(*exigirHoja(hoja_)); }

std::unique_ptr<excel::Range> HojaInterna::Cells() {
    return rango({0, kFilas - 1, 0, kColumnas - 1});
}

std::unique_ptr<excel::Range> HojaInterna::Columns(int32_t indice) {
    const int64_t columna = int64_t{indice} - 1;
    exigirEnHoja(0, columna);
    return rango({0, kFilas - 1, static_cast<int32_t>(columna), static_cast<int32_t>(columna)});
}

std::unique_ptr<excel::Range> HojaInterna::Rows(int32_t indice) {
    const int64_t fila = int64_t{indice} - 1;
    exigirEnHoja(fila, 0);
    return rango({static_cast<int32_t>(fila), static_cast<int32_t>(fila), 0, kColumnas - 1});
}

std::unique_ptr<excel::Range> HojaInterna::Range(const std::string& referencia) {
    return rango(areaDeTexto(referencia));
}

std::unique_ptr<excel::Range> HojaInterna::Rows(const std::string& referencia) {
    const Area area = areaDeTexto(referencia);
    if (!area.filasEnteras()) rechazar("\"" + referencia + "\" no es una referencia a filas.");
    return rango(area);
}

void HojaInterna::Paste() {
    const std::shared_ptr<Hoja> hoja = exigirHoja(hoja_);
    const std::shared_ptr<Hoja> origen = sesion_->copiado().hoja.lock();
    if (origen == nullptr) rechazar("No hay nada copiado que pegar.");
    const AreaDeHoja& seleccion = sesion_->seleccion();
    const bool aqui = seleccion.hoja.lock() == hoja;
    const Area& copiado = sesion_->copiado().area;
    const Area destino = aqui ? seleccion.area : Area{};
    copiar(*origen, copiado, *hoja, destino.fila0, destino.columna0);
    // What has been pasted is what is selected now; its first cell stays the active one.
    sesion_->seleccion() = {
        hoja_,
        {destino.fila0, destino.fila0 + copiado.fila1 - copiado.fila0, destino.columna0,
         destino.columna0 + copiado.columna1 - copiado.columna0}};
}

std::unique_ptr<excel::HPageBreaks> HojaInterna::HPageBreaks() {
    exigirHoja(hoja_);
    return std::make_unique<SaltosInternos>(hoja_);
}

void HojaInterna::PrintOut(int32_t /*copies*/, bool /*collate*/) {
    exigirHoja(hoja_);
    rechazar(kSinImpresora);
}

void HojaInterna::PrintPreview() {
    exigirHoja(hoja_);
    rechazar(kSinImpresora);
}

std::vector<std::unique_ptr<excel::Worksheet>> HojasInternas::enumerar() {
    std::vector<std::unique_ptr<excel::Worksheet>> lista;
    for (const auto& hoja : exigirAbierto(abierto_)->libro->hojas()) {
        if (hoja->esDeCalculo()) lista.push_back(std::make_unique<HojaInterna>(sesion_, hoja));
    }
    return lista;
}

int32_t HojasInternas::Count() { return static_cast<int32_t>(enumerar().size()); }

std::unique_ptr<excel::Worksheet> HojasInternas::Item(int32_t indice) {
    auto lista = enumerar();
    if (indice < 1 || static_cast<size_t>(indice) > lista.size()) {
        rechazar("El libro no tiene una hoja número " + std::to_string(indice) + ".");
    }
    return std::move(lista[static_cast<size_t>(indice) - 1]);
}

std::unique_ptr<excel::Worksheet> HojasInternas::Add(excel::Worksheet& after) {
    const std::shared_ptr<LibroAbierto> abierto = exigirAbierto(abierto_);
    const auto* anterior = dynamic_cast<const HojaInterna*>(&after);
    if (anterior == nullptr) rechazar("La hoja no es de este libro.");
    return std::make_unique<HojaInterna>(
        sesion_, anadirHoja(*abierto->libro, *exigirHoja(anterior->hoja())));
}

}  // namespace bn::xls
