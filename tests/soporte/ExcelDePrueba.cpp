// SPDX-License-Identifier: MIT
#include "tests/soporte/ExcelDePrueba.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <variant>

namespace bn {

namespace {

/// One started application: what its objects share.
struct Instancia {
    ExcelDePrueba& mundo;
    std::string numero;
    bool cerrada = false;
    std::vector<std::shared_ptr<LibroSimulado>> libros;
};

using Comun = std::shared_ptr<Instancia>;

std::string enTexto(const Variante& valor) {
    struct {
        std::string operator()(std::monostate) const { return "nada"; }
        std::string operator()(const std::string& texto) const { return '"' + texto + '"'; }
        std::string operator()(double numero) const { return "double " + deNumero(numero); }
        std::string operator()(float numero) const { return "float " + deNumero(numero); }
        std::string operator()(int32_t numero) const { return "int " + std::to_string(numero); }
        std::string operator()(bool logico) const { return logico ? "True" : "False"; }
        std::string operator()(FechaOle fecha) const { return "fecha " + deNumero(fecha.dias); }
        static std::string deNumero(double numero) {
            std::ostringstream texto;
            texto << numero;
            return texto.str();
        }
    } const visor;
    return std::visit(visor, valor);
}

std::string logico(bool valor) { return valor ? "True" : "False"; }

/// What every simulated object is: counted, noted, and dead with its application.
template <class Interfaz>
class Simulado : public Interfaz {
 public:
    Simulado(Comun comun, std::string clase, std::string cual)
        : comun_(std::move(comun)), clase_(std::move(clase)), cual_(std::move(cual)) {
        ++comun_->mundo.objetosVivos;
    }
    ~Simulado() override { --comun_->mundo.objetosVivos; }

    std::string etiqueta() const { return clase_ + (cual_.empty() ? "" : "[" + cual_ + "]"); }

 protected:
    void llamar(const std::string& miembro, const std::string& detalle) {
        comun_->mundo.anotar(clase_ + "." + miembro, etiqueta() + "." + miembro + detalle);
        if (comun_->cerrada) throw excel::ErrorExcel("La aplicación se ha cerrado");
    }
    void preguntar(const std::string& miembro) { llamar(miembro, "?"); }

    Comun comun_;
    std::string clase_;
    std::string cual_;
};

using HojaViva = std::pair<std::shared_ptr<LibroSimulado>, std::string>;

HojaSimulada& buscar(LibroSimulado& libro, const std::string& nombre) {
    for (auto& hoja : libro.hojas) {
        if (hoja.nombre == nombre) return hoja;
    }
    throw excel::ErrorExcel("La hoja ya no existe");
}

class RangoSimulado : public Simulado<excel::Range> {
 public:
    RangoSimulado(const Comun& comun, std::string cual, HojaViva hoja, int32_t fila = 0,
                  int32_t columna = 0)
        : Simulado(comun, "Range", std::move(cual)),
          hoja_(std::move(hoja)),
          fila_(fila),
          columna_(columna) {}

    std::unique_ptr<excel::Range> Item(int32_t fila, int32_t columna) override {
        const std::string cual = std::to_string(fila) + "," + std::to_string(columna);
        if (fila < 1 || columna < 1) throw excel::ErrorExcel("No hay ninguna celda " + cual);
        return std::make_unique<RangoSimulado>(comun_, cual, hoja_, fila, columna);
    }
    Variante FormulaR1C1() override {
        preguntar("FormulaR1C1");
        const Variante valor = buscar(*hoja_.first, hoja_.second).celda(fila_, columna_);
        return std::holds_alternative<std::monostate>(valor) ? Variante(std::string()) : valor;
    }
    void FormulaR1C1(const Variante& valor) override {
        llamar("FormulaR1C1=", enTexto(valor));
        buscar(*hoja_.first, hoja_.second).celdas[{fila_, columna_}] = valor;
    }
    void Select() override { llamar("Select", ""); }
    void ClearContents() override {
        llamar("ClearContents", "");
        buscar(*hoja_.first, hoja_.second).celdas.clear();
    }
    void Copy() override { llamar("Copy", ""); }
    void HorizontalAlignment(int32_t alineacion) override {
        llamar("HorizontalAlignment=", std::to_string(alineacion));
    }
    void ColumnWidth(double ancho) override { llamar("ColumnWidth=", enTexto(ancho)); }
    void NumberFormat(const std::string& formato) override { llamar("NumberFormat=", formato); }

 private:
    HojaViva hoja_;
    int32_t fila_;
    int32_t columna_;
};

class SaltosSimulados : public Simulado<excel::HPageBreaks> {
 public:
    explicit SaltosSimulados(const Comun& comun) : Simulado(comun, "HPageBreaks", "") {}
    void Add(excel::Range& before) override {
        llamar("Add", " Before " + dynamic_cast<RangoSimulado&>(before).etiqueta());
    }
};

class FichaSimulada : public Simulado<excel::Worksheet> {
 public:
    FichaSimulada(const Comun& comun, std::shared_ptr<LibroSimulado> libro, std::string nombre)
        : Simulado(comun, "Worksheet", nombre), hoja_(std::move(libro), std::move(nombre)) {}

    std::string Name() override {
        preguntar("Name");
        return buscar(*hoja_.first, hoja_.second).nombre;
    }
    void Name(const std::string& nombre) override {
        llamar("Name=", nombre);
        buscar(*hoja_.first, hoja_.second).nombre = nombre;
        hoja_.second = cual_ = nombre;
    }
    void Delete() override {
        llamar("Delete", "");
        std::erase_if(hoja_.first->hojas,
                      [this](const auto& hoja) { return hoja.nombre == hoja_.second; });
    }
    std::unique_ptr<excel::Range> Cells() override { return rango("todas"); }
    std::unique_ptr<excel::Range> Columns(int32_t indice) override {
        return rango("columna " + std::to_string(indice));
    }
    std::unique_ptr<excel::Range> Rows(int32_t indice) override {
        return rango("fila " + std::to_string(indice));
    }
    std::unique_ptr<excel::Range> Range(const std::string& referencia) override {
        return rango(referencia);
    }
    std::unique_ptr<excel::Range> Rows(const std::string& referencia) override {
        return rango("filas " + referencia);
    }
    void Paste() override { llamar("Paste", ""); }
    std::unique_ptr<excel::HPageBreaks> HPageBreaks() override {
        return std::make_unique<SaltosSimulados>(comun_);
    }
    void PrintOut(int32_t copies, bool collate) override {
        llamar("PrintOut", " Copies " + std::to_string(copies) + " Collate " + logico(collate));
    }
    void PrintPreview() override { llamar("PrintPreview", ""); }

    const std::string& nombre() const { return hoja_.second; }

 private:
    std::unique_ptr<excel::Range> rango(const std::string& cual) {
        preguntar("Range");
        return std::make_unique<RangoSimulado>(comun_, cual, hoja_);
    }

    HojaViva hoja_;
};

class HojasSimuladas : public Simulado<excel::Sheets> {
 public:
    HojasSimuladas(const Comun& comun, std::shared_ptr<LibroSimulado> libro)
        : Simulado(comun, "Sheets", ""), libro_(std::move(libro)) {}

    int32_t Count() override {
        preguntar("Count");
        return static_cast<int32_t>(libro_->hojas.size());
    }
    std::unique_ptr<excel::Worksheet> Item(int32_t indice) override {
        preguntar("Item");
        if (indice < 1 || indice > static_cast<int32_t>(libro_->hojas.size())) {
            throw excel::ErrorExcel("Subíndice fuera del intervalo");
        }
        return ficha(libro_->hojas[static_cast<std::size_t>(indice - 1)].nombre);
    }
    std::vector<std::unique_ptr<excel::Worksheet>> enumerar() override {
        preguntar("enumerar");
        std::vector<std::unique_ptr<excel::Worksheet>> fichas;
        for (const auto& hoja : libro_->hojas) fichas.push_back(ficha(hoja.nombre));
        return fichas;
    }
    std::unique_ptr<excel::Worksheet> Add(excel::Worksheet& after) override {
        const std::string anterior = dynamic_cast<FichaSimulada&>(after).nombre();
        llamar("Add", " After " + anterior);
        const auto lugar = std::find_if(libro_->hojas.begin(), libro_->hojas.end(),
                                        [&](const auto& h) { return h.nombre == anterior; });
        libro_->hojas.insert(lugar + 1, {"HojaAñadida", {}});
        return ficha("HojaAñadida");
    }

 private:
    std::unique_ptr<excel::Worksheet> ficha(const std::string& nombre) {
        return std::make_unique<FichaSimulada>(comun_, libro_, nombre);
    }

    std::shared_ptr<LibroSimulado> libro_;
};

class NombreSimulado : public Simulado<excel::NombreDefinido> {
 public:
    NombreSimulado(const Comun& comun, std::shared_ptr<LibroSimulado> libro, std::size_t indice)
        : Simulado(comun, "Name", libro->nombres[indice].first),
          libro_(std::move(libro)),
          indice_(indice) {}
    std::string Name() override {
        preguntar("Name");
        return libro_->nombres[indice_].first;
    }
    std::string RefersTo() override {
        preguntar("RefersTo");
        return libro_->nombres[indice_].second;
    }
    void RefersTo(const std::string& referencia) override {
        llamar("RefersTo=", referencia);
        libro_->nombres[indice_].second = referencia;
    }

 private:
    std::shared_ptr<LibroSimulado> libro_;
    std::size_t indice_;
};

class NombresSimulados : public Simulado<excel::Names> {
 public:
    NombresSimulados(const Comun& comun, std::shared_ptr<LibroSimulado> libro)
        : Simulado(comun, "Names", ""), libro_(std::move(libro)) {}
    std::vector<std::unique_ptr<excel::NombreDefinido>> enumerar() override {
        preguntar("enumerar");
        std::vector<std::unique_ptr<excel::NombreDefinido>> nombres;
        for (std::size_t i = 0; i < libro_->nombres.size(); ++i) {
            nombres.push_back(std::make_unique<NombreSimulado>(comun_, libro_, i));
        }
        return nombres;
    }
    void Add(const std::string& nombre, const std::string& referencia) override {
        llamar("Add", " Name " + nombre + " RefersTo " + referencia);
        libro_->nombres.emplace_back(nombre, referencia);
    }

 private:
    std::shared_ptr<LibroSimulado> libro_;
};

class CuadernoSimulado : public Simulado<excel::Workbook> {
 public:
    CuadernoSimulado(const Comun& comun, std::shared_ptr<LibroSimulado> libro)
        : Simulado(comun, "Workbook", ""), libro_(std::move(libro)) {}
    std::unique_ptr<excel::Sheets> Worksheets() override {
        preguntar("Worksheets");
        return std::make_unique<HojasSimuladas>(comun_, libro_);
    }
    std::unique_ptr<excel::Names> Names() override {
        preguntar("Names");
        return std::make_unique<NombresSimulados>(comun_, libro_);
    }
    std::string Name() override {
        preguntar("Name");
        return "Libro1";
    }
    void SaveAs(const std::string& libro, int32_t modoDeAcceso) override {
        llamar("SaveAs", " " + libro + " AccessMode " + std::to_string(modoDeAcceso));
        comun_->mundo.disco[libro] = *libro_;
        if (comun_->mundo.alGuardar) comun_->mundo.alGuardar(libro);
    }
    void Close() override { llamar("Close", ""); }

 private:
    std::shared_ptr<LibroSimulado> libro_;
};

class CuadernosSimulados : public Simulado<excel::Workbooks> {
 public:
    explicit CuadernosSimulados(const Comun& comun) : Simulado(comun, "Workbooks", "") {}
    std::unique_ptr<excel::Workbook> Open(const std::string& libro) override {
        llamar("Open", " " + libro);
        const auto guardado = comun_->mundo.disco.find(libro);
        if (guardado == comun_->mundo.disco.end()) {
            throw excel::ErrorExcel("No se encuentra " + libro);
        }
        return cuaderno(guardado->second);
    }
    std::unique_ptr<excel::Workbook> Add() override {
        llamar("Add", "");
        return cuaderno(nuevo());
    }
    std::unique_ptr<excel::Workbook> Add(const std::string& plantilla) override {
        llamar("Add", " Template " + plantilla);
        LibroSimulado libro = nuevo();
        libro.plantilla = plantilla;
        return cuaderno(libro);
    }
    std::unique_ptr<excel::Workbook> Item(int32_t indice) override {
        preguntar("Item");
        return std::make_unique<CuadernoSimulado>(
            comun_, comun_->libros.at(static_cast<std::size_t>(indice - 1)));
    }

 private:
    LibroSimulado nuevo() const {
        LibroSimulado libro;
        for (const auto& nombre : comun_->mundo.hojasDeNuevo) libro.hojas.push_back({nombre, {}});
        return libro;
    }
    std::unique_ptr<excel::Workbook> cuaderno(const LibroSimulado& libro) {
        comun_->libros.push_back(std::make_shared<LibroSimulado>(libro));
        return std::make_unique<CuadernoSimulado>(comun_, comun_->libros.back());
    }
};

class AplicacionSimulada : public Simulado<excel::Application> {
 public:
    explicit AplicacionSimulada(const Comun& comun)
        : Simulado(comun, "Application", comun->numero) {}
    void DisplayAlerts(bool mostrar) override { llamar("DisplayAlerts=", logico(mostrar)); }
    std::unique_ptr<excel::Workbooks> Workbooks() override {
        preguntar("Workbooks");
        return std::make_unique<CuadernosSimulados>(comun_);
    }
    std::unique_ptr<excel::Range> Selection() override { return rango("Selection"); }
    std::unique_ptr<excel::Range> ActiveCell() override { return rango("ActiveCell"); }
    void CutCopyMode(bool modo) override { llamar("CutCopyMode=", logico(modo)); }
    void Visible(bool visible) override { llamar("Visible=", logico(visible)); }
    void Quit() override {
        llamar("Quit", "");
        comun_->cerrada = true;
        --comun_->mundo.instanciasAbiertas;
    }

 private:
    std::unique_ptr<excel::Range> rango(const std::string& cual) {
        preguntar(cual);
        return std::make_unique<RangoSimulado>(comun_, cual, HojaViva{});
    }
};

}  // namespace

Variante HojaSimulada::celda(int32_t fila, int32_t columna) const {
    const auto encontrada = celdas.find({fila, columna});
    return encontrada == celdas.end() ? Variante() : encontrada->second;
}

const HojaSimulada& LibroSimulado::hoja(const std::string& nombre) const {
    for (const auto& candidata : hojas) {
        if (candidata.nombre == nombre) return candidata;
    }
    throw std::out_of_range("no sheet " + nombre);
}

std::vector<std::string> LibroSimulado::nombresDeHojas() const {
    std::vector<std::string> lista;
    for (const auto& una : hojas) lista.push_back(una.nombre);
    return lista;
}

void ExcelDePrueba::fallar(const std::string& miembro, const std::string& descripcion,
                           int32_t vez) {
    fallos_.push_back({miembro, descripcion, vez});
}

std::vector<std::string> ExcelDePrueba::ordenes() const {
    std::vector<std::string> lista;
    for (const auto& llamada : llamadas) {
        if (!std::string_view(llamada).ends_with('?')) lista.push_back(llamada);
    }
    return lista;
}

void ExcelDePrueba::anotar(const std::string& miembro, const std::string& linea) {
    llamadas.push_back(linea);
    if (alLlamar) alLlamar(linea);
    for (auto& fallo : fallos_) {
        if (fallo.miembro == miembro && --fallo.faltan == 0) {
            throw excel::ErrorExcel(fallo.descripcion);
        }
    }
}

std::unique_ptr<excel::Application> ExcelDePrueba::arrancar(bool conIdentificador) {
    porIdentificador.push_back(conIdentificador);
    if (!errorAlArrancar.empty()) throw excel::ErrorExcel(errorAlArrancar);
    ++instanciasAbiertas;
    ++ultimaInstancia_;
    return std::make_unique<AplicacionSimulada>(
        std::make_shared<Instancia>(Instancia{*this, std::to_string(ultimaInstancia_), false, {}}));
}

void ponerLibro(ExcelDePrueba& excel, const std::string& ruta,
                const std::vector<std::string>& hojas) {
    LibroSimulado& libro = excel.disco[ruta];
    libro.hojas.clear();
    for (const auto& nombre : hojas) libro.hojas.push_back({nombre, {}});
}

}  // namespace bn
