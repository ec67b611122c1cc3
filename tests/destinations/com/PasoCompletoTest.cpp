// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>

#include "download/PasoDeGuardado.h"
#include "platform/Ficheros.h"
#include "tests/destinations/com/ConSustituto.h"
#include "tests/soporte/TramasDePrueba.h"

// A whole save pass through Automation: its rows, its errors, and how often it crosses from one
// process to another.

namespace bn::prueba {
namespace {

constexpr int kPesadas = 5000;
constexpr std::size_t kPesadasPorLlamada = 50;
constexpr std::size_t kLlamadasDeBusqueda = 30;

class PasoPorExcel : public ConSustituto {
 protected:
    void SetUp() override {
        ConSustituto::SetUp();
        cfg_.LibroExcel(ruta("Pesadas.xls"));
        cfg_.HojaExcel("Pesadas");
        cfg_.UsoExcel(true);
        cfg_.UsoTexto(false);
    }

    void columnas(const std::vector<int16_t>& columnas) {
        for (int32_t campo = 0; campo < 8; ++campo) {
            const auto lugar = static_cast<std::size_t>(campo);
            cfg_.ColumnaExcel(campo, lugar < columnas.size() ? columnas[lugar] : int16_t{0});
        }
    }

    static std::string pesada(int numero) {
        PesadaDePrueba datos;
        datos.albaran = std::to_string(numero);
        datos.fechaHora = "15/03/23 12:00";
        return datos.datos();
    }

    /// The store of a download of that many weighings, written at one go.
    void almacenar(int cuantas) {
        std::ofstream fichero(almacen(), std::ios::binary);
        for (int numero = 1; numero <= cuantas; ++numero) fichero << pesada(numero) << "\r\n";
        fichero.close();
        ASSERT_TRUE(fichero.good());
    }

    std::filesystem::path almacen() const { return carpeta_ / "bnGuardo.txt"; }

    void pasar() { pasar(plataforma_, excel()); }
    void pasar(Plataforma& plataforma, XCel& hoja) {
        Lote lote(plataforma, 0, almacen(), carpeta_ / "bnGuardo.nota");
        lote.nota().crear({});
        lote.releer();
        PasoDeGuardado(plataforma, cfg_, hoja).ejecutar({&lote}, PasoDeGuardado::Fallo::kDeTodo);
    }

    /// A workbook with that many rows filled in one column.
    void llenar(int filas, int16_t columna) {
        PlataformaDePrueba interna(carpeta_.ruta());
        XCel libro(interna);
        libro.AbrirParaEscribir(ruta("Pesadas.xls"), "Pesadas", true);
        for (int fila = 1; fila <= filas; ++fila) {
            libro.Celda(static_cast<int16_t>(fila), columna, std::string("x"));
        }
        libro.Guardar("");
    }

    std::size_t llamadasDeUnPase(const std::vector<int16_t>& enColumnas) {
        columnas(enColumnas);
        almacenar(kPesadas);
        pasar();
        return anotar(llamadas().size());
    }

    /// How often the search for the first row crosses, in the columns given.
    std::size_t llamadasDeBusqueda(const std::vector<int16_t>& enColumnas) {
        excel().AbrirParaEscribir(ruta("Pesadas.xls"), "Pesadas", true);
        llamadas();
        EXPECT_EQ(excel().ValorNombre("bnUltima"), Variante());
        int16_t fila = 1;
        while (ocupada(fila, enColumnas)) ++fila;
        fila_ = fila;
        const std::size_t cuantas = anotar(llamadas().size());
        excel().Cerrar();
        return cuantas;
    }
    /// For whoever wants to know more than that it was few enough.
    static std::size_t anotar(std::size_t cuantas) {
        RecordProperty("llamadas", std::to_string(cuantas));
        return cuantas;
    }
    bool ocupada(int16_t fila, const std::vector<int16_t>& enColumnas) {
        for (const int16_t columna : enColumnas) {
            if (excel().Celda(fila, columna) != Variante(std::string())) return true;
        }
        return false;
    }

    bn::Setup cfg_{plataforma_};
    int16_t fila_ = 0;
};

TEST_F(PasoPorExcel, WritesEveryWeighingWithFewCalls) {
    EXPECT_LE(llamadasDeUnPase({1, 2, 3, 4, 5, 6, 7, 8}), kPesadas / kPesadasPorLlamada);
    EXPECT_EQ(leerCelda("Pesadas.xls", 1, 2), Variante(std::string("1234BCD")));
    EXPECT_NE(leerCelda("Pesadas.xls", 5000, 8), Variante(std::string()));
    EXPECT_EQ(leerCelda("Pesadas.xls", 5001, 1), Variante(std::string()));
}

TEST_F(PasoPorExcel, ColumnsFarApartCostNoMore) {
    EXPECT_LE(llamadasDeUnPase({1, 30, 60, 90, 120, 150, 180, 210}), kPesadas / kPesadasPorLlamada);
    EXPECT_EQ(leerCelda("Pesadas.xls", 5000, 30), Variante(std::string("1234BCD")));
    EXPECT_EQ(leerCelda("Pesadas.xls", 5000, 2), Variante(std::string()));
}

TEST_F(PasoPorExcel, TheRowsAreThoseOfTheEmbeddedEngine) {
    columnas({8, 7, 5, 4, 3, 2, 11, 12});
    almacenar(20);
    pasar();
    cfg_.LibroExcel(ruta("Interno.xls"));
    PlataformaDePrueba interna(carpeta_.ruta());
    XCel deMotor(interna);
    pasar(interna, deMotor);
    for (const int16_t fila : {int16_t{1}, int16_t{20}, int16_t{21}}) {
        for (int16_t columna = 1; columna <= 13; ++columna) {
            EXPECT_EQ(leerCelda("Pesadas.xls", fila, columna),
                      leerCelda("Interno.xls", fila, columna))
                << fila << ',' << columna;
        }
    }
}

TEST_F(PasoPorExcel, AFailedBlockEndsThePassAndTheTextLinesStay) {
    cfg_.UsoTexto(true);
    cfg_.ArchivoTexto(ruta("Pesadas.txt"));
    columnas({1, 2});
    almacenar(10);
    crearLibro("Pesadas.xls", {});
    ordenar("falla=Range.FormulaR1C1=");
    EXPECT_THROW(pasar(), excel::ErrorExcel);
    const std::string lineas = leerFichero(carpeta_ / "Pesadas.txt");
    EXPECT_EQ(std::count(lineas.begin(), lineas.end(), '\n'), 10);
    EXPECT_EQ(leerCelda("Pesadas.xls", 1, 1), Variante(std::string()));
}

TEST_F(PasoPorExcel, TheFirstRowIsFoundWithFewCalls) {
    llenar(30000, 1);
    EXPECT_LE(llamadasDeBusqueda({1, 2, 3, 4, 5, 6, 7, 8}), kLlamadasDeBusqueda);
    EXPECT_EQ(fila_, 30001);
}

TEST_F(PasoPorExcel, TheFirstRowIsFoundWithFewCallsWhenOnlyTheLastColumnIsFilled) {
    llenar(30000, 8);
    EXPECT_LE(llamadasDeBusqueda({1, 2, 3, 4, 5, 6, 7, 8}), kLlamadasDeBusqueda);
    EXPECT_EQ(fila_, 30001);
}

TEST_F(PasoPorExcel, TheFirstRowIsFoundWithFewCallsInColumnsFarApart) {
    llenar(30000, 1);
    EXPECT_LE(llamadasDeBusqueda({1, 30, 60, 90, 120, 150, 180, 210}), kLlamadasDeBusqueda);
    EXPECT_EQ(fila_, 30001);
}

TEST_F(PasoPorExcel, TheFirstRowIsFoundWithFewCallsWhenOnlyTheFarthestColumnIsFilled) {
    llenar(30000, 210);
    EXPECT_LE(llamadasDeBusqueda({1, 30, 60, 90, 120, 150, 180, 210}), kLlamadasDeBusqueda);
    EXPECT_EQ(fila_, 30001);
    EXPECT_LE(llamadasDeBusqueda({1, 16, 30, 31, 32, 60, 90, 210}), kLlamadasDeBusqueda);
    EXPECT_EQ(fila_, 30001);
    EXPECT_LE(llamadasDeBusqueda({210, 209, 208, 207, 1, 2, 3, 4}), kLlamadasDeBusqueda);
    EXPECT_EQ(fila_, 30001);
}

}  // namespace
}  // namespace bn::prueba
