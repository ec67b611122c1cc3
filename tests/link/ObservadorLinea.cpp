// SPDX-License-Identifier: MIT
#include "tests/link/ObservadorLinea.h"

#include <algorithm>

#include "tests/soporte/TramasDePrueba.h"

namespace bn::prueba {

namespace {

constexpr std::size_t kTramaMinima = 5;

bool empezada(const std::string& bytes) {
    const std::size_t fin = bytes.rfind('\r');
    return bytes.find(kStx, fin == std::string::npos ? 0 : fin + 1) != std::string::npos;
}

}  // namespace

void ObservadorLinea::empiezaDescarga() {
    ++descarga_;
    enCurso_ = true;
    buffer_.clear();
    origenes_.clear();
    cortadas_.clear();
    restoPendiente_ = porResponder_ = false;
}

void ObservadorLinea::lee(const std::string& bytes) {
    if (linea_.enTemporizador && bytes.find('\r') != std::string::npos)
        finalLeidoEn_ = linea_.vencimiento;
    buffer_ += bytes;
    origenes_.insert(origenes_.end(),
                     linea_.origenes.end() - static_cast<std::ptrdiff_t>(bytes.size()),
                     linea_.origenes.end());
}

bool ObservadorLinea::legible(const std::string& bytes) const {
    return bytes.size() > kTramaMinima &&
           bytes == trama(bytes.substr(1, bytes.size() - kTramaMinima));
}

/// The first frame; one that its check character had cut before, whole.
ObservadorLinea::Trama ObservadorLinea::tomar() {
    std::size_t largo = buffer_.find('\r') + 1;
    if (cortadas_.contains(buffer_.substr(0, largo)) && buffer_.substr(largo, 2) == "\n\r")
        largo += 2;
    Trama trama{buffer_.substr(0, largo), kNinguno, restoPendiente_, false};
    for (std::size_t i = 0; i < largo; ++i)
        if (origenes_[i] != kNinguno) trama.envio = origenes_[i];
    buffer_.erase(0, largo);
    origenes_.erase(origenes_.begin(), origenes_.begin() + static_cast<std::ptrdiff_t>(largo));
    trama.quedaban = !buffer_.empty();
    restoPendiente_ = false;
    return trama;
}

/// Frames before the wanted one have had no answer: copies.
ObservadorLinea::Trama ObservadorLinea::tomarHasta(bool quieroLegible) {
    Trama trama;
    while (hayTrama()) {
        trama = tomar();
        if (legible(trama.bytes) == quieroLegible) break;
        if (legible(trama.bytes)) ++tragadas_[registroDe(trama.envio)];
    }
    return trama;
}

std::size_t ObservadorLinea::registroDe(std::size_t envio) const {
    return envio == kNinguno ? kNinguno : indicador_.envios()[envio].registro;
}

std::size_t ObservadorLinea::pesada(const std::string& datos) {
    Trama trama;
    do {
        if (trama.bytes.size() > kTramaMinima) ++tragadas_[registroDe(trama.envio)];
        trama = tomarHasta(true);
    } while (hayTrama() && trama.bytes != prueba::trama(datos));
    // Of two equal ones the first has been swallowed.
    while (registroDe(trama.envio) == ultimo() && numerado(ultimo()) &&
           buffer_.starts_with(trama.bytes)) {
        ++tragadas_[ultimo()];
        trama = tomarHasta(true);
    }
    const std::size_t registro = registroDe(trama.envio);
    respondida_ = registro;
    porResponder_ = true;
    if (registro == kNinguno || registro >= indicador_.registros().size() ||
        indicador_.registros()[registro] != datos) {
        alteradas_.insert(registro);
        return kNinguno;
    }
    altas_.push_back({registro, trama.envio, linea_.salidas().size()});
    return registro;
}

void ObservadorLinea::transmite(const LineaSimulada::Salida& salida) {
    Respuesta respuesta;
    respuesta.descarga = descarga_;
    const bool primera = respuestas_.empty() || respuestas_.back().descarga != descarga_;
    if (!enCurso_) {
        respuesta.clase = Clase::kFinal;
    } else if (primera) {
        respuesta.clase = Clase::kPeticion;
    } else if (porResponder_) {
        respuesta.clase = Clase::kAck;
        respuesta.registro = respondida_;
        porResponder_ = false;
    } else if (salida.repetida && finalLeidoEn_ != linea_.vencimiento) {
        respuesta.clase = Clase::kRepeticion;
        respuesta.aMedias = empezada(buffer_);
        while (hayTrama()) {  // none has been answered
            const Trama trama = tomar();
            if (!legible(trama.bytes)) continue;
            if (registroDe(trama.envio) == ultimo()) {
                ++tragadas_[ultimo()];
            } else {
                respuesta.sobreEntera = true;
            }
        }
        respuesta.sinPrincipio = !buffer_.empty() && !respuesta.aMedias;
        restoPendiente_ = restoPendiente_ || respuesta.aMedias;
        buffer_.clear();
        origenes_.clear();
    } else {
        const Trama trama = tomarHasta(salida.c == kAck[0]);  // an ACK untold: the expected copy
        respuesta.clase = salida.c == kAck[0] ? Clase::kAck : Clase::kNak;
        respuesta.registro = registroDe(trama.envio);
        if (legible(trama.bytes + "\n\r")) cortadas_.insert(trama.bytes);
        respuesta.sinPrincipio = trama.bytes.front() != kStx;
        respuesta.deMas = trama.quedaban || trama.resto || trama.bytes.size() < kTramaMinima;
    }
    respuestas_.push_back(respuesta);
}

void ObservadorLinea::juzgar(ResultadoSimulacion& resultado) const {
    const auto apuntar = [&](const std::string& que, std::size_t registro,
                             const std::string& causa) {
        if (causa.starts_with("!")) {
            resultado.faltas.push_back(que + " " + std::to_string(registro) + ": " + causa);
        } else {
            ++resultado.disculpas[que + ": " + causa];
        }
    };
    std::map<std::size_t, Alta> primeras;
    for (std::size_t i = 0; i < altas_.size(); ++i) {
        const auto [primera, nueva] = primeras.emplace(altas_[i].registro, altas_[i]);
        if (!nueva) apuntar("doble", altas_[i].registro, causaDeDoble(primera->second, altas_[i]));
        if (nueva && i > 0 && altas_[i].registro < altas_[i - 1].registro)
            resultado.faltas.push_back("fuera de orden: " + std::to_string(altas_[i].registro));
    }
    for (const auto& olvido : indicador_.olvidos()) {
        if (primeras.contains(olvido.registro)) continue;
        apuntar("perdido", olvido.registro, causaDePerdida(olvido));
    }
    if (indicador_.pendientes() > 0) resultado.faltas.push_back("quedan registros en el indicador");
    for (std::size_t i = 0; i < respuestas_.size(); ++i) {
        if (respuestas_[i].aMedias && linea_.salidas()[i].c == kAck[0])
            resultado.faltas.push_back("ACK repetido sobre una trama empezada");
        if (respuestas_[i].sobreEntera)
            resultado.faltas.push_back("repetición sobre una trama entera por leer");
    }
}

std::string ObservadorLinea::causaDePerdida(const IndicadorSimulado::Olvido& olvido) const {
    if (alteradas_.contains(olvido.registro)) return "datos alterados con su control acertado";
    const auto& salida = linea_.salidas()[olvido.causa];
    const Respuesta& respuesta = respuestas_[olvido.causa];
    if (salida.c != kAck[0]) return "la línea ha hecho un ACK de otra respuesta";
    switch (respuesta.clase) {
        case Clase::kPeticion:
            return "la petición se tomó por ACK";
        case Clase::kRepeticion: {
            const auto antes =
                std::find_if(respuestas_.begin(), respuestas_.end(), [&](const Respuesta& r) {
                    return r.descarga == respuesta.descarga && r.clase == Clase::kAck;
                });
            const bool pedia =
                antes >= respuestas_.begin() + static_cast<std::ptrdiff_t>(olvido.causa);
            if (respuesta.sinPrincipio)
                return "un ACK repetido se oyó por una trama sin su principio";
            return pedia ? "la petición repetida se tomó por ACK"
                         : "un ACK repetido se oyó por una trama que no había llegado ni empezada";
        }
        case Clase::kAck:
            return desfasada(olvido.causa)
                       ? "desfase: un ACK que no era el último por oír"
                       : "! por el ACK del registro " + std::to_string(respuesta.registro);
        case Clase::kFinal:
            return "el ACK de un contador se oyó por la trama siguiente";
        default:
            return "! por un NAK";
    }
}

/// Whether, before that answer and within its download, the indicator may have heard one too many:
/// a repetition, the acknowledge of a copy, a NAK beside another answer.
bool ObservadorLinea::desfasada(std::size_t respuesta) const {
    const int descarga = respuestas_[respuesta].descarga;
    std::set<std::size_t> vistos;
    for (std::size_t i = 0; i < respuesta; ++i) {
        const Respuesta& r = respuestas_[i];
        const bool copia = r.clase == Clase::kAck && !vistos.insert(r.registro).second;
        if (r.descarga != descarga) continue;
        // A request that is ACK, too, may be heard after the answer that was still to come.
        if (r.clase == Clase::kPeticion && linea_.salidas()[i].c == kAck[0]) return true;
        if (copia || r.deMas || r.sinPrincipio || r.clase == Clase::kRepeticion) return true;
    }
    return respuestas_[respuesta].clase == Clase::kAck &&
           vistos.contains(respuestas_[respuesta].registro);
}

std::string ObservadorLinea::causaDeDoble(const Alta& primera, const Alta& segunda) const {
    const auto& envio = indicador_.envios()[segunda.envio];
    const Respuesta& causa = respuestas_[envio.causa];
    if (linea_.salidas()[envio.causa].c != envio.oido) return "la línea ha alterado una respuesta";
    if (!numerado(segunda.registro)) return "sin número de albarán";
    const int descarga = respuestas_[primera.respuesta].descarga;
    const int pedida = respuestas_[indicador_.envios()[primera.envio].causa].descarga;
    if (pedida < descarga || causa.descarga < descarga)
        return "una respuesta de la descarga anterior llegó en ésta";
    switch (causa.clase) {
        case Clase::kPeticion:
            return "! al pedir de nuevo";
        case Clase::kRepeticion:
            return "una repetición se oyó además de lo repetido";
        case Clase::kNak:
            if (envio.causa > primera.respuesta)
                return "un NAK de después de aceptarlo se oyó en lugar del ACK";
            if (!causa.deMas) {
                if (causa.sinPrincipio)
                    return "dos NAK por una trama que el ruido, o el pedir, ha partido";
                return desfasada(envio.causa) ? "desfase: un NAK que no era el último por oír"
                                              : "! tras el NAK de una trama entera";
            }
            if (aceptadoEntre(envio.causa, primera.respuesta))
                return "desfase: un NAK que no era el último por oír";
            return tragadas_.contains(segunda.registro) ? "segunda copia"
                                                        : "! la copia de un NAK de más";
        case Clase::kAck:
            return envio.oido == linea_.salidas()[envio.causa].c ? "un ACK se tomó por petición"
                                                                 : "! sin causa";
        default:
            return "! sin causa";
    }
}

bool ObservadorLinea::aceptadoEntre(std::size_t desde, std::size_t hasta) const {
    return std::any_of(altas_.begin(), altas_.end(), [&](const Alta& alta) {
        return alta.respuesta > desde && alta.respuesta < hasta;
    });
}

bool ObservadorLinea::numerado(std::size_t registro) const {
    return registro < indicador_.registros().size() &&
           indicador_.registros()[registro].substr(9, 7) != std::string(7, ' ');
}

}  // namespace bn::prueba
