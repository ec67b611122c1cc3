// SPDX-License-Identifier: MIT
#include "tests/download/CicloDePrueba.h"

#include <algorithm>
#include <utility>

#include "destinations/XCel.h"
#include "download/CamposPesada.h"
#include "download/Formato.h"
#include "download/LineaTexto.h"
#include "link/pesaDX5.h"
#include "platform/Ficheros.h"
#include "tests/soporte/TramasDePrueba.h"

namespace bn::prueba {

namespace {

constexpr std::size_t kLargoDeFecha = 17;  // with the blank behind it

bool conNumero(const std::string& datos) { return datos.substr(9, 7) != "       "; }

std::string sinFecha(const std::string& linea) {
    return linea.size() < kLargoDeFecha ? linea : linea.substr(kLargoDeFecha);
}

std::vector<std::string> enLineas(const std::string& contenido) {
    std::vector<std::string> lineas;
    for (std::size_t desde = 0; desde < contenido.size();) {
        const std::size_t fin = std::min(contenido.find("\r\n", desde), contenido.size());
        lineas.push_back(contenido.substr(desde, fin - desde));
        desde = fin + 2;
    }
    return lineas;
}

/// Every record once, in its order; but one without number that came again may stand there twice.
std::string comparar(const std::string& donde, const std::vector<std::string>& hay,
                     const std::vector<std::string>& debe, const IndicadorDeCiclo& indicador) {
    std::size_t i = 0;
    std::multiset<std::size_t> dudosas = indicador.dudosas();
    for (const std::string& uno : hay) {
        if (i < debe.size() && uno == debe[i]) {
            ++i;
            continue;
        }
        const auto esta = [&](std::size_t dudosa) {
            return dudosa < i && i > 0 && uno == debe[i - 1] && debe[dudosa] == uno &&
                   !conNumero(indicador.todas()[dudosa]);
        };
        const auto dudosa = std::find_if(dudosas.begin(), dudosas.end(), esta);
        if (dudosa != dudosas.end()) {
            dudosas.erase(dudosa);
        } else
            return donde + ": sobra o está fuera de sitio [" + uno + "]\n";
    }
    return i < debe.size() ? donde + ": falta [" + debe[i] + "]\n" : "";
}

}  // namespace

std::string registro(int albaran, const std::string& neto, const std::string& fechaHora) {
    PesadaDePrueba pesada;
    pesada.albaran = albaran == 0 ? "" : std::to_string(albaran);
    pesada.neto = neto;
    pesada.fechaHora = fechaHora;
    return pesada.datos();
}

void IndicadorDeCiclo::pesar(const std::string& datos) {
    todas_.push_back(datos);
    cola_.push_back(datos);
}

void IndicadorDeCiclo::enviar(PlataformaDePrueba& plataforma) {
    enviado_ = cola_.empty() ? Enviado::kContador : Enviado::kPesada;
    plataforma.puerto().recibir(trama(cola_.empty() ? "0007" : cola_.front()));
}

void IndicadorDeCiclo::conversar(PlataformaDePrueba& plataforma) {
    for (;;) {
        const std::string oidos = std::exchange(plataforma.puerto().enviado, {});
        if (oidos.empty()) return;
        const bool reconoce = oidos.back() == kAck.front();
        if (enviado_ == Enviado::kContador && reconoce) {
            enviado_ = Enviado::kNada;
            return;
        }
        if (hastaCorte_ && (*hastaCorte_)-- == 0) {
            hastaCorte_.reset();
            return colgar();
        }
        if (enviado_ == Enviado::kPesada && reconoce) cola_.pop_front();
        enviar(plataforma);
    }
}

void IndicadorDeCiclo::colgar() {
    if (enviado_ == Enviado::kPesada) dudosas_.insert(reconocidas());
    enviado_ = Enviado::kNada;
}

Vida::Vida(DiscoSimulado& disco, double reloj) : plataforma(Ciclo::kPrograma) {
    plataforma.usarDisco(disco);
    plataforma.horaActual = reloj;
    cfg = std::make_shared<Setup>(plataforma);
    des.emplace(plataforma);
    des->DatosCfg(cfg);
}

bool Vida::descargar(IndicadorDeCiclo& indicador) {
    indicador.colgar();
    if (!des->iniciarProceso()) return false;
    indicador.conversar(plataforma);
    return true;
}

void Vida::relevar() {
    const auto memoria = des->memoria();
    des.reset();
    des.emplace(plataforma);
    des->DatosCfg(cfg);
    des->memoria(memoria);
}

Ciclo::Ciclo(SistemaDeFicheros sistema) : disco(sistema) {
    disco.crearCarpeta(kPrograma);
    disco.crearCarpeta(kTexto.parent_path());
    disco.crearCarpeta(kLibro.parent_path());
    PlataformaDePrueba plataforma(kPrograma);
    plataforma.usarDisco(disco);
    Setup cfg(plataforma);
    cfg.UsoExcel(true);
    cfg.LibroExcel(ficheros::aTexto(kLibro));
    cfg.HojaExcel("Pesadas");
    cfg.UsoTexto(true);
    cfg.ArchivoTexto(ficheros::aTexto(kTexto));
}

void Ciclo::pesarUnas() {
    const int n = pesadas_;
    pesadas_ += 10;
    indicador.pesar(registro(n + 1, "0100.25", "15/03/23 12:00"));
    indicador.pesar(registro(0, "0200.50", ""));
    indicador.pesar(registro(0, "0200.50", ""));
    indicador.pesar(registro(n + 2, "0300.75", ""));
    indicador.pesar(registro(0, "0400.00", "15/03/23 12:30"));
    indicador.pesar(registro(0, "0400.00", "15/03/23 12:30"));
    indicador.pesar(registro(n + 3, "0500.00", "16/03/23 07:15"));
}

void Ciclo::cicloEntero(Vida& vida) {
    vida.des->guardarPendientes();
    for (int vez = 0; vez < 2; ++vez) {
        try {
            if (!vida.descargar(indicador)) return;
        } catch (const std::exception&) {
            indicador.colgar();
            vida.relevar();
        }
        if (vez == 0) pesarUnas();
    }
}

bool Ciclo::vivir(const std::function<void(Vida&)>& hechos) {
    reloj += 0.25;
    std::optional<Vida> vida;
    try {
        vida.emplace(disco, reloj);
        hechos(*vida);
        vida.reset();
    } catch (const MuerteSubita&) {
        disco.morir();
    } catch (const std::exception&) {
        vida.reset();  // settings that cannot be read: the program says so, and ends
    }
    const bool vivo = disco.vivo();
    vida.reset();
    indicador.colgar();
    disco.revivir();
    return vivo;
}

void Ciclo::recuperar() {
    const bool vivo = vivir([&](Vida& vida) {
        if (!vida.des->guardarPendientes()) {
            fallos_ += "quedan pendientes: " + vida.des->motivoPendientes() + "\n";
        }
        pesarUnas();
        if (!vida.descargar(indicador)) fallos_ += "no empieza la descarga\n";
        if (vida.des->Estado() != kTerminada) fallos_ += "no termina bien la descarga\n";
        if (vida.des->numPendientes() != 0) fallos_ += "quedan pendientes\n";
    });
    if (!vivo) fallos_ += "muere al recuperarse\n";
}

std::vector<std::string> Ciclo::lineas() const {
    return disco.existe(kTexto) ? enLineas(disco.contenido(kTexto)) : std::vector<std::string>();
}

Ciclo::Filas Ciclo::filas() {
    Filas todas;
    if (!disco.existe(kLibro)) return todas;
    PlataformaDePrueba plataforma(kPrograma);
    plataforma.usarDisco(disco);
    XCel hoja(plataforma);
    if (!hoja.AbrirParaLeer(ficheros::aTexto(kLibro), "Pesadas")) return todas;
    const auto texto = [](const Variante& celda, const char* formato) {
        return formatear(celda, formato);
    };
    for (int16_t fila = 1;; ++fila) {
        const Variante neto = hoja.Celda(fila, kPesoNeto + 1);
        if (const auto* nada = std::get_if<std::string>(&neto); nada && nada->empty()) break;
        todas.fechas.push_back(texto(hoja.Celda(fila, kFechaHora + 1), "dd/mm/yyyy hh:nn"));
        todas.textos.push_back(texto(hoja.Celda(fila, kAlbaran + 1), "0000000") + " " +
                               texto(neto, "0.00"));
    }
    hoja.Cerrar();
    return todas;
}

std::string Ciclo::comprobar() {
    PlataformaDePrueba plataforma(kPrograma);
    plataforma.usarDisco(disco);
    std::vector<std::string> debenLineas;
    std::vector<std::string> debenFilas;
    {
        const Setup cfg(plataforma);
        pesaDX5 pesada(plataforma);
        for (const std::string& datos : indicador.todas()) {
            pesada.DatosValidos(datos);
            debenLineas.push_back(sinFecha(lineaTexto(pesada, cfg)));
            debenFilas.push_back(formatear(Variante(pesada.Albaran()), "0000000") + " " +
                                 formatear(Variante(pesada.Neto()), "0.00"));
        }
    }
    std::vector<std::string> hayLineas;
    std::vector<std::string> fechas;
    for (const std::string& linea : lineas()) {
        hayLineas.push_back(sinFecha(linea));
        fechas.push_back(linea.substr(0, kLargoDeFecha - 1));
    }
    const Filas hayFilas = filas();
    std::string todo = std::exchange(fallos_, {});
    todo += comparar("texto", hayLineas, debenLineas, indicador);
    todo += comparar("hoja", hayFilas.textos, debenFilas, indicador);
    if (fechas != hayFilas.fechas) todo += "las fechas no son las mismas en los dos destinos\n";
    if (indicador.reconocidas() != indicador.todas().size())
        todo += "el indicador guarda pesadas\n";
    for (const std::string& nombre : disco.nombres(kPrograma)) {
        const bool suyo =
            nombre == "bnGuardo.txt" || nombre == "bnGuardo.nota" || nombre == "bnDX5.ini";
        if (!suyo) todo += "sobra " + nombre + "\n";
    }
    for (const auto& destino : {kTexto, kLibro}) {
        for (const std::string& nombre : disco.nombres(destino.parent_path())) {
            if (nombre != destino.filename()) todo += "sobra " + nombre + "\n";
        }
    }
    return todo;
}

}  // namespace bn::prueba
