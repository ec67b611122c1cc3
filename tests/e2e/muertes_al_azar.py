#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The program is killed at any moment of many downloads into both destinations, and started again:
each weighing arrives in each of them, once, and nothing is left behind."""

import os
import random
import time

import banco
import hoja_de_calculo

VIDAS = 12  # of the program, each ended at a moment of chance
PESADAS = 6  # in each download
SUCESOS = ["petición", "reconocida", "contador", "contador", "terminada"]
TRAS = 0.08  # seconds, at most, behind what happened: a save pass takes about so long


class MuertesAlAzar(banco.PruebaConBanco):
    def vivir(self, simulador, azar):
        """One life: it ends shortly behind something that the indicator has told of."""
        programa = self.banco.arrancar()
        suceso = azar.choice(SUCESOS)
        hasta = simulador.veces(suceso) + (azar.randint(1, 5) if suceso == "reconocida" else 1)
        peticiones = simulador.veces("petición") + 2  # where there are no weighings left

        def sucedido():
            return simulador.veces(suceso) >= hasta or simulador.veces("petición") >= peticiones

        self.esperar(sucedido, 20, f"{suceso} {hasta}")
        time.sleep(azar.uniform(0, TRAS))
        self.banco.matar(programa)

    def test_each_weighing_arrives_once_in_each_destination(self):
        semilla = int(os.environ.get("BN_SEMILLA", "1"))
        azar = random.Random(semilla)
        self.banco.configurar(excel=hoja_de_calculo.claves(self.banco))
        simulador = self.banco.simular(
            "--pesadas", PESADAS, "--tandas", VIDAS, "--espera", 300, "--semilla", semilla
        )
        for _ in range(VIDAS):
            self.vivir(simulador, azar)
        self.banco.arrancar()
        self.esperar(
            lambda: simulador.veces("reconocida") >= VIDAS * PESADAS, 40, "every weighing"
        )
        terminadas = simulador.veces("terminada")
        self.esperar(
            lambda: simulador.veces("terminada") >= terminadas + 2, 20, "downloads of nothing"
        )
        todas = self.comprobar_texto(VIDAS * PESADAS)
        hoja_de_calculo.comprobar_filas(self, todas)
        restos = {f.name for f in self.banco.carpeta.iterdir() if "Pesadas" in f.name}
        self.assertEqual(restos, {"Pesadas.xls", "Pesadas.txt"})


if __name__ == "__main__":
    banco.ejecutar()
