#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The text file cannot be written: the weighings are put aside, the user is told, and the program
goes on."""

import banco
import linea


class CarpetaImposible(banco.PruebaConBanco):
    def setUp(self):
        super().setUp()
        self.carpeta = self.banco.carpeta / "no-hay"
        self.banco.texto = self.carpeta / "Pesadas.txt"
        self.banco.configurar()
        self.simulador = self.banco.simular("--pesadas", 10, "--tandas", 2)
        self.banco.arrancar()

    def esperar_mensaje(self):
        # The counter record's acknowledge follows the saving, and this one fails.
        self.esperar(lambda: self.simulador.veces("contador"), 30, "the end of the download")
        self.esperar(lambda: len(self.banco.ventanas()) == 2, 20, "the message")

    def cerrar_mensaje(self):
        def cerrado():
            self.banco.cerrar_mensaje()
            return len(self.banco.ventanas()) == 1

        self.esperar(cerrado, 20, "the message closed")

    def test_the_store_is_put_aside_and_the_user_told(self):
        self.esperar_mensaje()
        copias = self.banco.copias()
        self.assertEqual(len(copias), 1)
        esperado = b"".join(datos + b"\r\n" for datos in self.banco.reconocidas())
        self.assertEqual(copias[0].read_bytes(), esperado)
        self.assertEqual(len(self.banco.reconocidas()), 10)

    def test_the_countdown_starts_again_and_the_next_download_is_saved(self):
        self.esperar_mensaje()
        self.carpeta.mkdir()
        primeras = self.banco.reconocidas()
        self.cerrar_mensaje()
        self.esperar(lambda: self.banco.lineas_texto() >= 10, 30, "the next download")
        self.assertEqual(
            banco.contenido(self.banco.texto),
            linea.lineas(self.banco.reconocidas()[len(primeras) :]),
        )

    def test_no_download_starts_while_the_message_is_open(self):
        self.esperar_mensaje()
        peticiones = self.simulador.veces("petición")
        # Longer than the countdown of one second: nothing to wait for shows that nothing happens.
        with self.assertRaises(AssertionError):
            self.esperar(
                lambda: self.simulador.veces("petición") > peticiones, 3, "a request"
            )


if __name__ == "__main__":
    banco.ejecutar()
