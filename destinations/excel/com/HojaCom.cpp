// SPDX-License-Identifier: MIT
#include "destinations/excel/com/HojaCom.h"

#include "destinations/excel/com/ErrorCom.h"
#include "destinations/excel/com/Miembros.h"
#include "destinations/excel/com/RangoCom.h"

namespace bn::excel::com {

namespace {

/// One of ours behind an interface of the model. Throws ErrorExcel for anybody else's.
template <class Nuestro, class Interfaz>
Nuestro& exigirNuestro(Interfaz& objeto) {
    auto* nuestro = dynamic_cast<Nuestro*>(&objeto);
    if (!nuestro) lanzarError(DISP_E_TYPEMISMATCH);
    return *nuestro;
}

class SaltosCom final : public ObjetoCom<excel::HPageBreaks> {
 public:
    using ObjetoCom::ObjetoCom;

    void Add(excel::Range& before) override {
        const VarianteCom celda = exigirNuestro<RangoCom>(before).comoArgumento();
        com().llamarConNombres(miembro::kAdd, {{L"Before", celda}});
    }
};

}  // namespace

std::string HojaCom::Name() { return comoTexto(com().leer(miembro::kName)); }

void HojaCom::Name(const std::string& nombre) { com().poner(miembro::kName, argumento(nombre)); }

void HojaCom::Delete() { com().llamar(miembro::kDelete); }

std::unique_ptr<excel::Range> HojaCom::Cells() {
    objeto().sesion()->exigirViva();
    return std::make_unique<CeldasCom>(objeto(), bloques_);
}

std::unique_ptr<excel::Range> HojaCom::area(const wchar_t* miembro, const Variante& cual) const {
    return std::make_unique<AreaCom>(com().objeto(miembro, clase::kRango, {argumento(cual)}));
}

std::unique_ptr<excel::Range> HojaCom::Columns(int32_t indice) {
    return area(miembro::kColumns, indice);
}

std::unique_ptr<excel::Range> HojaCom::Rows(int32_t indice) { return area(miembro::kRows, indice); }

std::unique_ptr<excel::Range> HojaCom::Range(const std::string& referencia) {
    return area(miembro::kRange, referencia);
}

std::unique_ptr<excel::Range> HojaCom::Rows(const std::string& referencia) {
    return area(miembro::kRows, referencia);
}

void HojaCom::Paste() { com().llamar(miembro::kPaste); }

std::unique_ptr<excel::HPageBreaks> HojaCom::HPageBreaks() {
    return std::make_unique<SaltosCom>(com().objeto(miembro::kHPageBreaks, clase::kSaltos));
}

void HojaCom::PrintOut(int32_t copies, bool collate) {
    // From, To, Copies, Preview, ActivePrinter, PrintToFile, Collate.
    const VarianteCom omitido = VarianteCom::omitido();
    com().llamar(miembro::kPrintOut, {omitido, omitido, argumento(copies), omitido, omitido,
                                      omitido, argumento(collate)});
}

void HojaCom::PrintPreview() {
    const Despacho& hoja = com();
    // It comes back when the person who looks at it has closed it.
    const Plazo sinPlazo(*hoja.sesion(), std::chrono::milliseconds::zero());
    hoja.llamar(miembro::kPrintPreview);
}

int32_t HojasCom::Count() { return com().leer(miembro::kCount).entero(); }

std::unique_ptr<excel::Worksheet> HojasCom::Item(int32_t indice) {
    return std::make_unique<HojaCom>(
        com().objeto(miembro::kItem, clase::kHoja, {argumento(indice)}));
}

std::vector<std::unique_ptr<excel::Worksheet>> HojasCom::enumerar() {
    std::vector<std::unique_ptr<excel::Worksheet>> hojas;
    for (Despacho& hoja : com().enumerar(clase::kHoja)) {
        hojas.push_back(std::make_unique<HojaCom>(std::move(hoja)));
    }
    return hojas;
}

std::unique_ptr<excel::Worksheet> HojasCom::Add(excel::Worksheet& after) {
    // Before, After.
    const VarianteCom detras = exigirNuestro<HojaCom>(after).comoArgumento();
    return std::make_unique<HojaCom>(
        com().objeto(miembro::kAdd, clase::kHoja, {VarianteCom::omitido(), detras}));
}

}  // namespace bn::excel::com
