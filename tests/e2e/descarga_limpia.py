#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Downloads without faults: every weighing, once, in order, byte for byte."""

import datetime

import banco
import linea


class DescargaLimpia(banco.PruebaConBanco):
    def descargar(self, pesadas, *opciones):
        simulador = self.banco.simular("--pesadas", pesadas, *opciones)
        self.banco.arrancar()
        self.esperar(lambda: simulador.veces("terminada"), 60, "the end of the download")
        self.esperar(lambda: self.banco.lineas_texto() >= pesadas, 10, "the text file")
        return simulador

    def test_long_records_reach_the_text_file_byte_for_byte(self):
        self.banco.configurar()
        simulador = self.descargar(100)
        # The next download, of nothing, must not touch it.
        self.esperar(lambda: simulador.veces("terminada") >= 2, 20, "the next download")
        self.assertEqual(
            banco.contenido(self.banco.texto), linea.lineas(self.banco.reconocidas())
        )
        cuentas = simulador.resumen()
        self.assertEqual(cuentas["reconocidas"], 100)
        self.assertEqual(cuentas["enviadas"], 100)
        self.assertEqual(cuentas["rechazadas"], 0)

    def test_short_records_take_the_date_of_the_computer(self):
        self.banco.configurar()
        antes = datetime.datetime.now().replace(second=0, microsecond=0)
        self.descargar(20, "--forma", "corta", "--semilla", 2)
        despues = datetime.datetime.now()
        datos = self.banco.reconocidas()
        lineas = banco.contenido(self.banco.texto).splitlines(keepends=True)
        self.assertEqual(len(lineas), len(datos))
        for texto, pesada in zip(lineas, datos):
            fecha = texto[:16]
            momento = datetime.datetime.strptime(fecha.decode("ascii"), "%d/%m/%Y %H:%M")
            self.assertTrue(antes <= momento <= despues, fecha)
            self.assertEqual(texto, linea.linea(pesada, fecha))

    def test_each_download_is_added_to_what_there_was(self):
        self.banco.configurar()
        self.banco.texto.write_bytes(b"lo que hab\xeda\r\n")
        simulador = self.banco.simular("--pesadas", 7, "--tandas", 3)
        self.banco.arrancar()
        self.esperar(lambda: self.banco.lineas_texto() >= 22, 60, "three downloads")
        self.assertEqual(
            banco.contenido(self.banco.texto),
            b"lo que hab\xeda\r\n" + linea.lineas(self.banco.reconocidas()),
        )
        self.assertEqual(simulador.resumen()["reconocidas"], 21)

    def test_a_text_file_that_its_reader_takes_away_is_begun_anew(self):
        self.banco.configurar()
        self.banco.simular("--pesadas", 7, "--tandas", 3)
        self.banco.arrancar()
        llevadas = b""
        for vuelta in range(1, 4):
            self.esperar(lambda: self.banco.lineas_texto() == 7, 20, f"download {vuelta}")
            llevadas += banco.contenido(self.banco.texto)
            self.banco.texto.unlink()
        self.esperar(lambda: not self.banco.sobras(), 10, "the end of what was put aside")
        self.assertEqual(llevadas, linea.lineas(self.banco.reconocidas()))
        self.assertFalse(self.banco.texto.exists())

    def test_an_empty_indicator_leaves_no_text_file(self):
        self.banco.configurar()
        simulador = self.banco.simular("--pesadas", 0)
        self.banco.arrancar()
        self.esperar(lambda: simulador.veces("terminada") >= 2, 30, "two downloads of nothing")
        self.assertFalse(self.banco.texto.exists())

    def test_an_indicator_that_answers_at_once_loses_nothing(self):
        self.banco.configurar()
        self.banco.simular("--sin-ritmo", "--pesadas", 100, "--tandas", 3)
        self.banco.arrancar()
        self.esperar(lambda: len(self.banco.reconocidas()) == 300, 60, "the weighings")
        self.esperar(lambda: self.banco.lineas_texto() >= 300, 10, "the text file")
        self.assertEqual(
            banco.contenido(self.banco.texto), linea.lineas(self.banco.reconocidas())
        )

    def test_framing_characters_and_line_parameters_are_those_of_the_settings(self):
        self.banco.configurar({"Caracteres": "36;255;84;80", "Param": "4800,E,8,2"})
        self.descargar(
            20, "--inicial", 36, "--final", 255, "--peticion", 80, "--parametros", "4800,E,8,2"
        )
        self.assertEqual(
            banco.contenido(self.banco.texto), linea.lineas(self.banco.reconocidas())
        )


if __name__ == "__main__":
    banco.ejecutar()
