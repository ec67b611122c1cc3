#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The program is killed in mid-download: what the indicator was told to forget is never lost."""

import banco
import linea

PESADAS = 40


class MuerteSubita(banco.PruebaConBanco):
    def matar_tras(self, cuantas, semilla):
        """Kills it once so many have been acknowledged; returns simulator and acknowledged data."""
        self.banco.configurar()
        simulador = self.banco.simular(
            "--pesadas", PESADAS, "--espera", 1000, "--semilla", semilla
        )
        programa = self.banco.arrancar()
        self.esperar(
            lambda: simulador.veces("reconocida") >= cuantas, 30, f"weighing {cuantas}"
        )
        self.banco.matar(programa)
        # An acknowledge may still have been on its way: by the time it gives up it has heard it.
        self.esperar(lambda: simulador.veces("abandonada"), 10, "the indicator giving up")
        reconocidas = self.banco.reconocidas()
        self.assertGreaterEqual(len(reconocidas), cuantas)
        self.assertLess(len(reconocidas), PESADAS, "the download had already ended")
        return simulador, reconocidas

    def comprobar_almacen(self, reconocidas):
        """All that was acknowledged is in the store, in order; at most one more that was not."""
        guardado = banco.contenido(self.banco.almacen)
        completas = b"".join(datos + b"\r\n" for datos in reconocidas)
        self.assertEqual(guardado[: len(completas)], completas)
        self.assertLessEqual(len(guardado) - len(completas), 74 + 2)

    def comprobar_reinicio(self, simulador, reconocidas):
        """A new start and its downloads keep what was acknowledged, and bring the rest."""
        self.banco.arrancar()
        quedan = PESADAS - len(reconocidas)

        def terminado():
            self.banco.cerrar_mensaje()
            return simulador.veces("terminada") and self.banco.lineas_texto() >= quedan

        self.esperar(terminado, 60, "the download after the new start")
        self.esperar(lambda: simulador.veces("terminada") >= 2, 30, "one download more")
        todas = self.banco.reconocidas()
        self.assertEqual(len(todas), PESADAS)
        self.assertEqual(
            banco.contenido(self.banco.texto), linea.lineas(todas[len(reconocidas) :])
        )
        copias = b"".join(banco.contenido(fichero) for fichero in self.banco.copias())
        apartadas = copias.split(b"\r\n")
        for datos in reconocidas:
            self.assertIn(datos, apartadas, "an acknowledged weighing has been lost")

    def test_killed_after_the_first_weighing(self):
        simulador, reconocidas = self.matar_tras(1, 1)
        self.comprobar_almacen(reconocidas)
        self.comprobar_reinicio(simulador, reconocidas)

    def test_killed_in_the_middle(self):
        simulador, reconocidas = self.matar_tras(PESADAS // 2, 2)
        self.comprobar_almacen(reconocidas)
        self.comprobar_reinicio(simulador, reconocidas)

    def test_killed_shortly_before_the_end(self):
        simulador, reconocidas = self.matar_tras(PESADAS - 4, 3)
        self.comprobar_almacen(reconocidas)
        self.comprobar_reinicio(simulador, reconocidas)

    def test_killed_again_and_again(self):
        """Five deaths in one batch, each followed by a new start."""
        self.banco.configurar()
        simulador = self.banco.simular("--pesadas", PESADAS, "--espera", 700)
        for muerte in range(1, 6):
            programa = self.banco.arrancar()
            self.esperar(
                lambda: self._avanza(simulador, muerte * 6), 30, f"weighing {muerte * 6}"
            )
            self.banco.matar(programa)
            self.esperar(
                lambda: simulador.veces("abandonada") >= muerte, 10, "the indicator giving up"
            )
        self.banco.arrancar()
        self.esperar(
            lambda: self._avanza(simulador, PESADAS) and simulador.veces("terminada") >= 2,
            60,
            "the rest",
        )
        copias = b"".join(banco.contenido(fichero) for fichero in self.banco.copias())
        apartadas = copias.split(b"\r\n")
        escritas = banco.contenido(self.banco.texto).splitlines(keepends=True)
        todas = self.banco.reconocidas()
        self.assertEqual(len(todas), PESADAS)
        for datos in todas:
            self.assertTrue(
                datos in apartadas or linea.linea(datos) in escritas,
                f"an acknowledged weighing has been lost: {datos}",
            )

    def _avanza(self, simulador, hasta):
        self.banco.cerrar_mensaje()
        return simulador.veces("reconocida") >= hasta


if __name__ == "__main__":
    banco.ejecutar()
