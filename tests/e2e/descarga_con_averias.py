#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Downloads over a bad line: each fault by itself and all together, and still every weighing,
once, in order, byte for byte."""

import banco
import linea

PESADAS = 30


class DescargaConAverias(banco.PruebaConBanco):
    def descargar(self, averias, *opciones):
        """Downloads with those faults; returns the simulator's counts."""
        # A line this bad spends many attempts in one download.
        self.banco.configurar({"TimeOut": "600;32"})
        for averia, tasa in averias.items():
            opciones += (f"--averia-{averia}", tasa)
        simulador = self.banco.simular("--pesadas", PESADAS, "--goteo-ms", 2, *opciones)
        self.banco.arrancar()
        self.esperar(lambda: simulador.veces("terminada"), 90, "the end of the download")
        self.esperar(lambda: self.banco.lineas_texto() >= PESADAS, 10, "the text file")
        datos = self.banco.reconocidas()
        self.assertEqual(len(set(datos)), PESADAS)
        self.assertEqual(banco.contenido(self.banco.texto), linea.lineas(datos))
        cuentas = simulador.resumen()
        for averia in averias:
            self.assertGreater(cuentas[averia], 0, f"the fault {averia} has not been tried")
        self.assertEqual(cuentas["reconocidas"], PESADAS)
        return cuentas

    def test_bad_check_character(self):
        cuentas = self.descargar({"control": 30})
        self.assertGreater(cuentas["rechazadas"], 0)

    def test_noise_before_a_frame(self):
        cuentas = self.descargar({"ruido": 30})
        self.assertGreater(cuentas["rechazadas"], 0)

    def test_cut_frame(self):
        cuentas = self.descargar({"corte": 20})
        self.assertGreater(cuentas["reenviadas"], 0)

    def test_frame_byte_by_byte(self):
        cuentas = self.descargar({"goteo": 40})
        self.assertEqual(cuentas["rechazadas"], 0)

    def test_pauses_shorter_than_the_time_out(self):
        cuentas = self.descargar({"pausa": 30}, "--pausa-ms", 250)
        self.assertEqual(cuentas["reenviadas"], 0)

    def test_pauses_longer_than_the_time_out(self):
        # Ends well between the computer's second and third transmission.
        self.descargar({"pausa": 15}, "--pausa-ms", 850)

    def test_lost_answers(self):
        self.descargar({"respuesta": 20})

    def test_carriage_return_inside_the_data(self):
        cuentas = self.descargar({"retorno": 30})
        self.assertGreater(cuentas["rechazadas"], 0)

    def test_trailer_in_the_wrong_order(self):
        cuentas = self.descargar({"cola": 30})
        self.assertGreater(cuentas["rechazadas"], 0)

    def test_all_faults_together(self):
        averias = ["control", "ruido", "corte", "goteo", "pausa", "respuesta", "retorno", "cola"]
        self.descargar(dict.fromkeys(averias, 8), "--pausa-ms", 250, "--semilla", 4)

    def test_silence_ends_the_download_and_the_next_one_brings_the_rest(self):
        self.banco.configurar({"TimeOut": "300;3"})
        simulador = self.banco.simular(
            "--pesadas", 12, "--silencio-tras", 5, "--silencio-ms", 2500
        )
        self.banco.arrancar()
        self.esperar(lambda: self.banco.lineas_texto() == 5, 20, "the five received so far")
        self.assertEqual(simulador.veces("reconocida"), 5)
        self.esperar(lambda: self.banco.lineas_texto() >= 12, 30, "the rest")
        self.assertEqual(
            banco.contenido(self.banco.texto), linea.lineas(self.banco.reconocidas())
        )

    def test_a_line_that_vanishes_ends_the_download_and_its_return_brings_the_rest(self):
        self.banco.configurar({"TimeOut": "300;3"})
        simulador = self.banco.simular(
            "--pesadas", 12, "--desaparece-tras", 5, "--vuelve-ms", 2500
        )
        self.banco.arrancar()
        self.esperar(lambda: self.banco.lineas_texto() == 5, 20, "the five received so far")
        self.assertEqual(simulador.veces("reconocida"), 5)
        self.esperar(lambda: self.banco.lineas_texto() >= 12, 30, "the rest")
        self.assertEqual(
            banco.contenido(self.banco.texto), linea.lineas(self.banco.reconocidas())
        )


if __name__ == "__main__":
    banco.ejecutar()
