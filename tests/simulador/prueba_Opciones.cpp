// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "tools/simulador/Opciones.h"

namespace bn::simulador {
namespace {

using ::testing::HasSubstr;

std::string fallo(const std::vector<std::string>& argumentos) {
    try {
        leerOpciones(argumentos);
    } catch (const ErrorOpciones& error) {
        return error.what();
    }
    return "";
}

TEST(Opciones, WithoutArgumentsTheLineIsTheUsualOne) {
    const Opciones opciones = leerOpciones({});
    EXPECT_EQ(opciones.parametros, "9600,N,8,1");
    EXPECT_EQ(opciones.indicador.caracteres.inicial, '\x02');
    EXPECT_EQ(opciones.indicador.caracteres.final, '\x03');
    EXPECT_EQ(opciones.indicador.caracteres.peticion, '\x06');
    EXPECT_EQ(opciones.indicador.pesadas, 10);
    EXPECT_EQ(opciones.indicador.tandas, 1);
    EXPECT_TRUE(opciones.ritmo);
    EXPECT_TRUE(opciones.dispositivo.empty());
    for (const uint32_t tasa : opciones.averias.porMillon) EXPECT_EQ(tasa, 0U);
}

TEST(Opciones, ValuesFollowTheOptionOrAnEqualsSign) {
    const Opciones opciones =
        leerOpciones({"--pesadas", "25", "--forma=corta", "--semilla", "18446744073709551615",
                      "--peticion=80", "--parametros", "19200,E,7,2", "--digitos=5", "--salir"});
    EXPECT_EQ(opciones.indicador.pesadas, 25);
    EXPECT_EQ(opciones.forma, Forma::kCorta);
    EXPECT_EQ(opciones.semilla, UINT64_MAX);
    EXPECT_EQ(opciones.indicador.caracteres.peticion, 'P');
    EXPECT_EQ(opciones.parametros, "19200,E,7,2");
    EXPECT_EQ(opciones.indicador.digitos, 5);
    EXPECT_TRUE(opciones.salir);
}

TEST(Opciones, RatesAreHundredths) {
    const auto tasa = [](const char* texto) {
        return leerOpciones({"--averia-cola", texto})
            .averias.porMillon[static_cast<std::size_t>(Averia::kCola)];
    };
    EXPECT_EQ(tasa("0"), 0U);
    EXPECT_EQ(tasa("2.5"), 25'000U);
    EXPECT_EQ(tasa("0.0001"), 1U);
    EXPECT_EQ(tasa("100"), 1'000'000U);
    for (const char* malo : {"100.1", "101", "-1", "", ".", "2.", ".5", "1,5", "2.00001", "x"}) {
        EXPECT_THAT(fallo({"--averia-cola", malo}), HasSubstr("porcentaje de 0 a 100")) << malo;
    }
}

TEST(Opciones, EveryFaultHasItsOption) {
    for (std::size_t i = 0; i < kNumeroAverias; ++i) {
        const std::string opcion = "--averia-" + std::string(nombre(static_cast<Averia>(i)));
        EXPECT_EQ(leerOpciones({opcion, "1"}).averias.porMillon[i], 10'000U) << opcion;
    }
}

TEST(Opciones, MistakesAreToldInSpanishWithTheOptionAndTheValue) {
    EXPECT_EQ(fallo({"--nada"}), "no se conoce la opción «--nada»");
    EXPECT_EQ(fallo({"pesadas"}), "no se conoce la opción «pesadas»");
    EXPECT_EQ(fallo({""}), "no se conoce la opción «»");
    EXPECT_EQ(fallo({"--pesadas"}), "falta el valor de --pesadas");
    EXPECT_EQ(fallo({"--salir=1"}), "la opción --salir no lleva valor");
    EXPECT_EQ(fallo({"--inicial", "256"}),
              "el valor «256» de --inicial debe ser un número entero de 0 a 255");
    EXPECT_EQ(fallo({"--forma", "media"}),
              "el valor «media» de --forma debe ser «corta» o «larga»");
    EXPECT_EQ(fallo({"--parametros", "9600"}),
              "el valor «9600» de --parametros debe ser como 9600,N,8,1");
    EXPECT_EQ(fallo({"--enlace="}), "el valor «» de --enlace no puede estar vacío");
    EXPECT_THAT(fallo({"--pesadas", "99999999999999999999"}), HasSubstr("número entero"));
    EXPECT_THAT(fallo({"--pesadas", "3x"}), HasSubstr("número entero"));
}

TEST(Opciones, OptionsThatContradictEachOtherAreRefused) {
    EXPECT_NE(fallo({"--dispositivo", "/dev/ttyS0", "--enlace", "x"}), "");
    EXPECT_NE(fallo({"--vuelve-ms", "5"}), "");
    EXPECT_NE(fallo({"--silencio-ms", "5"}), "");
    EXPECT_EQ(fallo({"--desaparece-tras", "3", "--vuelve-ms", "5"}), "");
}

TEST(Opciones, HelpNamesEveryOptionAndFitsATerminal) {
    EXPECT_TRUE(leerOpciones({"--help"}).ayuda);
    EXPECT_TRUE(leerOpciones({"-h"}).ayuda);
    const std::string ayuda = textoAyuda();
    for (const char* opcion : {"--dispositivo RUTA", "--enlace RUTA", "--averia-respuesta P",
                               "--desaparece-tras N", "--registro FICHERO", "--salir"}) {
        EXPECT_THAT(ayuda, HasSubstr(opcion));
    }
    std::size_t columnas = 0;
    for (const char c : ayuda) {
        const bool continuacion = (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
        columnas = c == '\n' ? 0 : columnas + (continuacion ? 0 : 1);
        ASSERT_LE(columnas, 100U) << ayuda;
    }
}

}  // namespace
}  // namespace bn::simulador
