// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "app/Puesto.h"
#include "platform/Ficheros.h"
#include "tests/soporte/DiscoSimulado.h"
#include "tests/soporte/ExcelDePrueba.h"
#include "tests/soporte/TramasDePrueba.h"

namespace bn {

/// The desk without its window, on a disk and with a spreadsheet application that fail when they
/// are told to.
class PuestoPrueba : public testing::Test {
 protected:
    PuestoPrueba() {
        plataforma.usarDisco(disco);
        plataforma.horaActual = 45000.5;
        disco.crearCarpeta(programa);
        disco.crearCarpeta(oficina);
        disco.crearCarpeta(despacho);
    }

    /// The settings file: the period of automatic downloads, which destinations are on.
    void configurar(int32_t periodo, bool hoja, bool texto) {
        disco.poner(programa / "bnDX5.ini",
                    "[General]\r\nAutom=" + std::to_string(periodo) +
                        ";False\r\n[Excel]\r\nUso=" + (hoja ? "True" : "False") +
                        "\r\nLibro=" + libro + "\r\n[Texto]\r\nUso=" + (texto ? "True" : "False") +
                        "\r\nDestino=" + ficheros::aTexto(lineas) + "\r\n");
    }
    Puesto& arrancar() {
        puesto = std::make_unique<Puesto>(plataforma);
        puesto->avisoFuera.conectar([this](const std::string& texto) { fuera.push_back(texto); });
        return *puesto;
    }
    /// The program is killed: nothing of it touches the disk any more.
    void matar() {
        disco.morir();
        puesto.reset();
        disco.revivir();
    }

    static std::string datos(int32_t albaran) {
        prueba::PesadaDePrueba pesada;
        pesada.albaran = std::to_string(albaran);
        pesada.fechaHora = "15/03/23 12:00";
        return pesada.datos();
    }
    void recibir(const std::string& registro) {
        plataforma.puerto().recibir(prueba::trama(registro));
    }
    /// What the indicator sends for a request: these weighings, and its counter.
    void llegan(const std::vector<int32_t>& albaranes) {
        for (const int32_t albaran : albaranes) recibir(datos(albaran));
        recibir("000" + std::to_string(albaranes.size() % 10));
    }
    /// A download that a person starts.
    void descargar(const std::vector<int32_t>& albaranes) {
        ASSERT_TRUE(puesto->descargar());
        llegan(albaranes);
    }
    void pasar(int32_t milisegundos) { plataforma.avanzar(milisegundos); }

    /// The delivery note numbers in the text file, in order.
    std::vector<int32_t> enTexto() const {
        std::vector<int32_t> albaranes;
        if (!disco.existe(lineas)) return albaranes;
        const std::string& todo = disco.contenido(lineas);
        for (std::size_t i = 0; i + 26 + 7 <= todo.size(); i = todo.find("\r\n", i) + 2) {
            albaranes.push_back(std::stoi(todo.substr(i + 26, 7)));
        }
        return albaranes;
    }
    /// Those in the worksheet, from the first row down.
    std::vector<int32_t> enHoja() {
        std::vector<int32_t> albaranes;
        if (!plataforma.excel.disco.contains(libro)) return albaranes;
        const HojaSimulada& hoja = plataforma.excel.disco[libro].hoja("Pesadas");
        for (int32_t fila = 1;; ++fila) {
            const Variante valor = hoja.celda(fila, 3);
            if (!std::holds_alternative<int32_t>(valor)) return albaranes;
            albaranes.push_back(std::get<int32_t>(valor));
        }
    }
    /// What stands in the program's folder but settings, store and note.
    std::vector<std::string> sobras() const {
        std::vector<std::string> nombres = disco.nombres(programa);
        std::erase_if(nombres, [](const std::string& nombre) {
            return nombre == "bnDX5.ini" || nombre == "bnGuardo.txt" || nombre == "bnGuardo.nota";
        });
        return nombres;
    }
    int32_t pendientes() const { return puesto->controlador().numPendientes(); }
    std::string motivo() const { return puesto->controlador().motivoPendientes(); }

    const std::filesystem::path programa = "/programa";
    const std::filesystem::path oficina = "/oficina";
    const std::filesystem::path lineas = oficina / "Pesadas.txt";
    const std::filesystem::path despacho = "/despacho";  ///< where the workbook stands
    const std::string libro = "/despacho/Pesadas.xls";
    DiscoSimulado disco;
    PlataformaConExcel plataforma{programa};
    std::vector<std::string> fuera;  ///< told beside the icon
    std::unique_ptr<Puesto> puesto;
};

}  // namespace bn
