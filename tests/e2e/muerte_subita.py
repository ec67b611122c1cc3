#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The program is killed in mid-download: whatever the indicator was told to forget is kept, and the
next start brings it to its destination, once, by itself."""

import banco
import linea

PESADAS = 40


class MuerteSubita(banco.PruebaConBanco):
    def llegar_a(self, simulador, cuantas):
        self.esperar(
            lambda: simulador.veces("reconocida") >= cuantas, 30, f"weighing {cuantas}"
        )

    def empezar(self, cuantas, semilla):
        """Starts a download and waits until so many have been acknowledged."""
        self.banco.configurar()
        simulador = self.banco.simular(
            "--pesadas", PESADAS, "--espera", 1000, "--semilla", semilla
        )
        programa = self.banco.arrancar()
        self.llegar_a(simulador, cuantas)
        return simulador, programa

    def comprobar_almacen(self, simulador, cuantas):
        """All that was acknowledged is in the store, in order; at most one more that was not."""
        # An acknowledge may still have been on its way: by the time it gives up it has heard it.
        self.esperar(lambda: simulador.veces("abandonada"), 10, "the indicator giving up")
        reconocidas = self.banco.reconocidas()
        self.assertGreaterEqual(len(reconocidas), cuantas)
        self.assertLess(len(reconocidas), PESADAS, "the download had already ended")
        guardado = banco.contenido(self.banco.almacen)
        completas = b"".join(datos + b"\r\n" for datos in reconocidas)
        self.assertEqual(guardado[: len(completas)], completas)
        self.assertLessEqual(len(guardado) - len(completas), 74 + 2)

    def comprobar_reinicio(self, simulador):
        """A new start saves what was received, and its downloads bring the rest."""
        self.banco.arrancar()
        self.llegar_a(simulador, PESADAS)
        self.esperar(lambda: simulador.veces("terminada") >= 2, 30, "one download more")
        self.comprobar_texto(PESADAS)
        self.assertEqual(len(self.banco.ventanas()), 1, "there is nothing to tell")

    def test_killed_after_the_first_weighing(self):
        simulador, programa = self.empezar(1, 1)
        self.banco.matar(programa)
        self.comprobar_almacen(simulador, 1)
        self.comprobar_reinicio(simulador)

    def test_killed_in_the_middle(self):
        simulador, programa = self.empezar(PESADAS // 2, 2)
        self.banco.matar(programa)
        self.comprobar_almacen(simulador, PESADAS // 2)
        self.comprobar_reinicio(simulador)

    def test_killed_shortly_before_the_end(self):
        simulador, programa = self.empezar(PESADAS - 4, 3)
        self.banco.matar(programa)
        self.comprobar_almacen(simulador, PESADAS - 4)
        self.comprobar_reinicio(simulador)

    def test_what_was_received_is_saved_without_the_indicator(self):
        simulador, programa = self.empezar(PESADAS // 2, 4)
        self.banco.matar(programa)
        self.comprobar_almacen(simulador, PESADAS // 2)
        simulador.resumen()
        self.banco.configurar({"Autom": "0;False"})
        guardadas = banco.contenido(self.banco.almacen).split(b"\r\n")[:-1]
        self.banco.arrancar()
        self.esperar(lambda: self.banco.lineas_texto() >= len(guardadas), 20, "the text file")
        self.assertEqual(banco.contenido(self.banco.texto), linea.lineas(guardadas))

    def test_killed_again_and_again(self):
        """Five deaths in one batch, each followed by a new start."""
        self.banco.configurar()
        simulador = self.banco.simular("--pesadas", PESADAS, "--espera", 700)
        for muerte in range(1, 6):
            programa = self.banco.arrancar()
            self.llegar_a(simulador, muerte * 6)
            self.banco.matar(programa)
            self.esperar(
                lambda: simulador.veces("abandonada") >= muerte, 10, "the indicator giving up"
            )
        self.comprobar_reinicio(simulador)


if __name__ == "__main__":
    banco.ejecutar()
