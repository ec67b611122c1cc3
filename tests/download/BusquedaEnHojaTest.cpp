// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "config/Codificacion.h"
#include "destinations/XCel.h"
#include "download/BusquedaEnHoja.h"
#include "download/CamposPesada.h"
#include "download/MatriculaEnHoja.h"
#include "platform/Ficheros.h"
#include "tests/soporte/CarpetaTemporal.h"
#include "tests/soporte/ExcelDePrueba.h"
#include "tests/soporte/TramasDePrueba.h"

namespace bn {
namespace {

using prueba::PesadaDePrueba;

constexpr double kReloj = 46000.123456789;

std::string datos(int albaran, const std::string& neto = "0100.25",
                  const std::string& matricula = "1234BCD") {
    PesadaDePrueba pesada;
    pesada.albaran = albaran == 0 ? "" : std::to_string(albaran);
    pesada.neto = neto;
    pesada.matricula = matricula;
    return pesada.datos();
}

Comienzo desdeFila(int32_t fila) {
    Comienzo comienzo;
    comienzo.lugar = static_cast<std::uint64_t>(fila);
    comienzo.columnas = {1, 2, 3, 4, 5, 6, 7, 8};
    return comienzo;
}

/// The sheet in the engine of its own, which interprets what is written, and in the fake, which
/// does not.
class BusquedaEnHojaPrueba : public testing::TestWithParam<bool> {
 protected:
    void SetUp() override {
        plataforma = GetParam() ? std::make_unique<PlataformaConExcel>(carpeta.ruta())
                                : std::make_unique<PlataformaDePrueba>(carpeta.ruta());
        hoja = std::make_unique<XCel>(*plataforma);
        hoja->AbrirParaEscribir(libro, "Pesadas", true);
    }
    FilaEsperada fila(const std::string& registro) {
        pesaDX5 pesada(*plataforma);
        pesada.DatosValidos(registro, kReloj);
        FilaEsperada una;
        for (int32_t campo = 0; campo < kCamposPesada; ++campo) {
            Variante valor = valorDeCampo(pesada, campo);
            if (auto* texto = std::get_if<std::string>(&valor)) *texto = cp1252AUtf8(*texto);
            una.valores.at(static_cast<std::size_t>(campo)) = valor;
        }
        una.conAlbaran = pesada.Albaran() != 0;
        return una;
    }
    void escribir(int16_t donde, const std::string& registro) {
        const FilaEsperada una = fila(registro);
        for (int16_t campo = 0; campo < kCamposPesada; ++campo) {
            Variante valor = una.valores.at(static_cast<std::size_t>(campo));
            if (auto* texto = std::get_if<std::string>(&valor)) *texto = matriculaEnHoja(*texto);
            hoja->Celda(donde, static_cast<int16_t>(campo + 1), valor);
        }
    }
    /// In the workbook as it comes back from the disk.
    std::string buscar(const Comienzo& comienzo, const std::vector<std::string>& registros) {
        hoja->Guardar("");
        EXPECT_TRUE(hoja->AbrirParaLeer(libro, "Pesadas"));
        std::vector<FilaEsperada> filas;
        for (const auto& registro : registros) filas.push_back(fila(registro));
        const std::string halladas = buscarEnHoja(*hoja, comienzo, filas).texto();
        hoja->Cerrar();
        return halladas;
    }

    prueba::CarpetaTemporal carpeta;
    std::string libro = ficheros::aTexto(carpeta / "l.xls");
    std::unique_ptr<PlataformaDePrueba> plataforma;
    std::unique_ptr<XCel> hoja;
};

TEST_P(BusquedaEnHojaPrueba, FindsNumberedRowsAnywhere) {
    escribir(2, datos(11));
    escribir(9, datos(12));
    EXPECT_EQ(buscar(desdeFila(5), {datos(12), datos(13), datos(11)}), "0,2");
}

TEST_P(BusquedaEnHojaPrueba, FindsRowsWithoutNumberOnlyFromTheirPlaceDown) {
    escribir(4, datos(0));
    escribir(7, datos(0, "0200.00"));
    EXPECT_EQ(buscar(desdeFila(5), {datos(0), datos(0, "0200.00")}), "1");
}

TEST_P(BusquedaEnHojaPrueba, EachRowCountsOnce) {
    for (int16_t donde = 5; donde < 7; ++donde) escribir(donde, datos(0));
    EXPECT_EQ(buscar(desdeFila(5), {datos(0), datos(0), datos(0)}), "0-1");
}

TEST_P(BusquedaEnHojaPrueba, ARowThatDiffersInOneColumnIsAnother) {
    escribir(5, datos(11, "0100.50"));
    escribir(6, datos(12, "0100.25", "9999XYZ"));
    EXPECT_EQ(buscar(desdeFila(5), {datos(11), datos(12)}), "");
}

TEST_P(BusquedaEnHojaPrueba, ComparesOnlyTheColumnsThatWereWritten) {
    escribir(5, datos(11, "0100.50"));
    Comienzo sinNeto = desdeFila(5);
    sinNeto.columnas[kPesoNeto] = 0;
    EXPECT_EQ(buscar(sinNeto, {datos(11)}), "0");
}

TEST_P(BusquedaEnHojaPrueba, WithoutTheNumbersColumnNumberedRowsAreLookedForFromTheirPlaceDown) {
    escribir(2, datos(11));
    escribir(6, datos(11));
    Comienzo sinAlbaran = desdeFila(5);
    sinAlbaran.columnas[kAlbaran] = 0;
    EXPECT_EQ(buscar(sinAlbaran, {datos(11), datos(11)}), "0");
}

TEST_P(BusquedaEnHojaPrueba, WithoutAnyColumnEveryRowIsThere) {
    Comienzo ninguna = desdeFila(5);
    ninguna.columnas = {};
    EXPECT_EQ(buscar(ninguna, {datos(11), datos(0)}), "0-1");
}

TEST_P(BusquedaEnHojaPrueba, KnowsEveryValueAgain) {
    const std::vector<std::string> matriculas = {"0047", "1234E56",  "1-2",      "MAY5", "=X12",
                                                 "",     "  A 1 ",   "\xD1\x80", "TRUE", "#N/A",
                                                 "1,5",  "+34 9999", "50%",      "a b",  "12:30"};
    const std::vector<std::string> pesos = {"0000.10", "-000.03", "9999999", "0123.45", "16777.7",
                                            "0000000", "00.0001", "1234567", "99999.9", "0000.07"};
    std::vector<std::string> registros;
    for (std::size_t i = 0; i < matriculas.size(); ++i) {
        const int albaran = i % 2 == 0 ? static_cast<int>(i) + 1 : 0;
        registros.push_back(datos(albaran, pesos.at(i % pesos.size()), matriculas[i]));
        escribir(static_cast<int16_t>(i + 1), registros.back());
    }
    registros.emplace_back("esto no es una pesada");
    escribir(static_cast<int16_t>(registros.size()), registros.back());
    EXPECT_EQ(buscar(desdeFila(1), registros), "0-" + std::to_string(registros.size() - 1));
}

TEST_P(BusquedaEnHojaPrueba, KnowsADateAgainToTheSecondInEitherCalendar) {
    escribir(1, datos(11));
    escribir(2, datos(12));
    hoja->Celda(2, 1, Variante(kReloj - 1462));
    escribir(3, datos(13));
    hoja->Celda(3, 1, Variante(kReloj + 1.0 / 86400));
    EXPECT_EQ(buscar(desdeFila(1), {datos(11), datos(12), datos(13)}), "0-1");
}

INSTANTIATE_TEST_SUITE_P(EnCadaMotor, BusquedaEnHojaPrueba, testing::Bool(),
                         [](const auto& caso) { return caso.param ? "Simulado" : "Propio"; });

}  // namespace
}  // namespace bn
