#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The port is not there: the program goes on trying, and downloads once it is."""

import banco
import linea


class SinDispositivo(banco.PruebaConBanco):
    def intentar(self, segundos=20):
        """Starts the program and waits for its first attempt, which begins a new note."""
        self.banco.arrancar()
        self.esperar(self.banco.nota.exists, segundos, "the first attempt")

    def esperar_otro_intento(self):
        """The countdown starts anew only when the failed download has been shown."""
        primera = self.banco.nota.stat().st_mtime_ns
        self.esperar(
            lambda: self.banco.nota.stat().st_mtime_ns > primera, 20, "the next attempt"
        )

    def test_the_download_comes_when_the_port_comes(self):
        self.banco.configurar()
        self.intentar()
        self.assertFalse(self.banco.texto.exists())
        self.banco.simular("--pesadas", 10)
        self.esperar(lambda: self.banco.lineas_texto() >= 10, 30, "the weighings")
        self.assertEqual(
            banco.contenido(self.banco.texto), linea.lineas(self.banco.reconocidas())
        )

    def test_a_port_that_is_no_serial_port_is_not_written_to(self):
        fichero = self.banco.carpeta / "no-es-un-puerto"
        fichero.write_bytes(b"intacto")
        self.banco.configurar(puerto=fichero)
        self.intentar()
        self.esperar_otro_intento()
        self.assertEqual(fichero.read_bytes(), b"intacto")
        self.assertFalse(self.banco.texto.exists())

    def test_no_message_box_is_shown(self):
        self.banco.configurar()
        self.intentar()
        self.esperar_otro_intento()
        self.assertEqual(len(self.banco.ventanas()), 1)


if __name__ == "__main__":
    banco.ejecutar()
