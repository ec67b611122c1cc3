// SPDX-License-Identifier: MIT
#include "download/SalidaTexto.h"

#include <string_view>
#include <utility>

#include "download/BusquedaEnTexto.h"
#include "download/LineaTexto.h"

namespace bn {

namespace {

constexpr std::string_view kFinDeLinea = "\r\n";

CamposDeLinea camposDe(const Setup& cfg) {
    CamposDeLinea campos{};
    for (int32_t campo = 0; campo < kCamposPesada; ++campo) {
        campos[static_cast<std::size_t>(campo)] = {cfg.Posicion(campo), cfg.Largo(campo),
                                                   cfg.Formato(campo)};
    }
    return campos;
}

/// Whoever edited the file may have left its last line open: the next one would grow on it.
bool lineaAbierta(Disco& disco, const std::filesystem::path& fichero, std::uint64_t largo) {
    return largo > 0 && ficheros::leerDesde(disco, fichero, largo - 1) != "\n";
}

/// A file that was made by somebody who did not live to flush its name looks like any other.
void volcarNombre(Disco& disco, const std::filesystem::path& fichero) {
    ficheros::sincronizarCarpeta(disco, fichero.parent_path());
}

/// A file whose folder is away (a drive pulled out) has not been taken by its reader: it may come
/// back with what it holds.
void exigirCarpeta(Disco& disco, const std::filesystem::path& fichero) {
    const auto carpeta = fichero.parent_path();
    if (carpeta.empty() || ficheros::esCarpeta(disco, carpeta)) return;
    throw ErrorFichero(fichero, "no existe", ErrorFichero::Causa::kNoExiste);
}

}  // namespace

SalidaTexto::SalidaTexto(Plataforma& plataforma, const Setup& cfg)
    : plataforma_(plataforma), cfg_(cfg) {}

Comienzo SalidaTexto::aqui() const {
    Comienzo comienzo;
    comienzo.fichero = cfg_.ArchivoTexto();
    comienzo.campos = camposDe(cfg_);
    return comienzo;
}

void SalidaTexto::resolver(LoteEnCurso& lote) {
    const Parte& parte = lote.lote.nota().parte(Destino::kTexto);
    const bool sinSaber = lote.lote.nota().desconocida() && parte.llegadas.vacio();
    if (!parte.empezada && !sinSaber) return;
    const Comienzo comienzo = parte.empezada ? *parte.empezada : aqui();
    const auto porLlegar = lote.porLlegar(Destino::kTexto);
    const auto halladas = buscar(lote, comienzo, porLlegar);
    if (!halladas) {
        // Begun where nothing stands any more: what the note counts has arrived, the rest not.
        lote.lote.nota().apuntar({apunte::Llega{Destino::kTexto, {}}});
        return;
    }
    if (halladas->vacio()) return;  // the part stays begun where it was, with nothing in it
    Tramos llegadas;
    for (std::size_t i = 0; i < porLlegar.size(); ++i) {
        if (halladas->contiene(i)) llegadas.anadir(porLlegar[i], porLlegar[i] + 1);
    }
    lote.lote.nota().apuntar({apunte::Llega{Destino::kTexto, llegadas}});
}

/// Positions in porLlegar of the lines that stand in the file; nothing when what was begun cannot
/// be looked at any more.
std::optional<Tramos> SalidaTexto::buscar(const LoteEnCurso& lote, const Comienzo& comienzo,
                                          const std::vector<std::size_t>& porLlegar) {
    Disco& disco = plataforma_.disco();
    const auto fichero = ficheros::aRuta(comienzo.fichero);
    const bool esElDeAhora = comienzo.fichero == cfg_.ArchivoTexto();
    try {
        const auto largo = ficheros::largo(disco, fichero);
        if (!largo) exigirCarpeta(disco, fichero);
        if (!largo || *largo < comienzo.lugar) {
            if (lote.lote.nota().parte(Destino::kTexto).empezada) {
                avisar("El fichero de texto " + comienzo.fichero +
                       " se ha retirado antes de terminar de escribirlo: las pesadas que faltaban "
                       "por confirmar se escriben de nuevo. Compruebe que no estén dos veces.");
            }
            return std::nullopt;
        }
        std::vector<std::string> lineas;
        pesaDX5 pesada(plataforma_);
        for (const std::size_t ordinal : porLlegar) {
            pesada.DatosValidos(lote.pesadas[ordinal], lote.lote.nota().reloj());
            lineas.push_back(lineaTexto(pesada, comienzo.campos));
            lineas.back() += kFinDeLinea;
        }
        const auto hallazgo =
            buscarEnTexto(ficheros::leerDesde(disco, fichero, comienzo.lugar), lineas);
        // Whoever wrote them may not have lived to flush them, nor the file's name.
        for (const auto& trozo : hallazgo.trozos) {
            ficheros::sobrescribir(disco, fichero, comienzo.lugar + trozo.lugar, trozo.bytes);
        }
        if (!hallazgo.trozos.empty()) volcarNombre(disco, fichero);
        return hallazgo.halladas;
    } catch (const ErrorFichero&) {
        if (esElDeAhora) throw;
        return std::nullopt;
    }
}

void SalidaTexto::abrir() {
    anexo_.emplace(plataforma_.disco(), ficheros::aRuta(cfg_.ArchivoTexto()));
    abierta_ = true;
}

void SalidaTexto::empezar(LoteEnCurso& lote) {
    if (lote_) acabarLote();
    const auto fichero = ficheros::aRuta(cfg_.ArchivoTexto());
    if (!anexo_) anexo_.emplace(plataforma_.disco(), fichero);
    if (lineaAbierta(plataforma_.disco(), fichero, anexo_->largo())) {
        // On the disk before the place is noted: a lookup begins behind it.
        anexo_.reset();
        ficheros::anadir(plataforma_.disco(), fichero, kFinDeLinea);
        anexo_.emplace(plataforma_.disco(), fichero);
    }
    Comienzo comienzo = aqui();
    comienzo.lugar = fin_ = anexo_->largo();
    Nota& nota = lote.lote.nota();
    if (nota.parte(Destino::kTexto).empezada != comienzo) {
        nota.apuntar({apunte::Empieza{Destino::kTexto, std::move(comienzo)}});
    }
    lote_ = &lote;
    escritas_ = {};
}

void SalidaTexto::escribir(const pesaDX5& pesada, std::size_t ordinal) {
    std::string linea = lineaTexto(pesada, cfg_);
    linea += kFinDeLinea;
    anexo_->escribir(linea);
    fin_ += linea.size();
    escritas_.anadir(ordinal, ordinal + 1);
}

/// Only what is on the disk itself has arrived.
void SalidaTexto::acabarLote() {
    // Where the flush fails they are looked up the next time: abandonar must not count them.
    LoteEnCurso& acabado = *std::exchange(lote_, nullptr);
    anexo_->cerrar();
    anexo_.reset();
    volcarNombre(plataforma_.disco(), ficheros::aRuta(cfg_.ArchivoTexto()));
    Nota& nota = acabado.lote.nota();
    if (escritas_.cuantos() == acabado.porLlegar(Destino::kTexto).size()) {
        nota.apuntar({apunte::Hecho{Destino::kTexto}});
    } else {
        nota.apuntar({apunte::Llega{Destino::kTexto, escritas_}});
    }
}

void SalidaTexto::guardar() {
    if (lote_) acabarLote();
    anexo_.reset();
    abierta_ = false;
}

void SalidaTexto::abandonar() {
    abierta_ = false;
    LoteEnCurso* const cortado = std::exchange(lote_, nullptr);
    try {
        // A line that failed, and could not be cut back, is completed by the next look.
        const bool entero = anexo_ && cortado && anexo_->largo() == fin_;
        if (anexo_) anexo_->cerrar();
        anexo_.reset();
        // Without any the part stays begun: nothing stands behind its place, and looking tells so.
        if (entero && !escritas_.vacio()) {
            cortado->lote.nota().apuntar({apunte::Llega{Destino::kTexto, escritas_}});
        }
    } catch (const std::exception&) {
        anexo_.reset();  // what arrived is looked up the next time
    }
}

}  // namespace bn
