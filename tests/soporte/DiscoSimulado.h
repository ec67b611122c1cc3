// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/Disco.h"
#include "tests/soporte/FicheroSimulado.h"

namespace bn {

/// The process that used a simulated disk has ended, or the power has. No error: nobody is left to
/// handle one, so that it is no std::exception and only the test catches it.
struct MuerteSubita {};

/// One call of a simulated disk's.
struct Operacion {
    enum class Tipo {
        kAbrir,
        kNuevo,
        kMirar,
        kResolver,
        kListar,
        kRenombrar,
        kBorrar,
        kVolcarCarpeta,
        kLeer,
        kEscribir,
        kAnadir,
        kMedir,
        kCortar,
        kVolcar,
        kHeredar,
    };
    std::int64_t numero = 0;  ///< from 1 on, over the disk's whole life
    Tipo tipo{};
    std::filesystem::path ruta{};
    std::filesystem::path destino{};  ///< of kRenombrar
    std::uint64_t desde = 0;          ///< the place, or the new length
    std::uint64_t bytes = 0;

    bool escribe() const { return tipo == Tipo::kEscribir || tipo == Tipo::kAnadir; }
    /// One line for a trace.
    std::string texto() const;
};

/// When in an operation something happens to it.
enum class Momento {
    kAntes,
    kAMedias,  ///< after half the bytes of a write; before any other operation
    kDespues,  ///< it has taken effect, but nobody hears of it
};

/// A disk in memory, whose every behaviour follows from what it was asked and from seeds. It keeps
/// what programs see, and beside it what a power cut may leave: bytes that were not flushed, and
/// names whose folder was not, survive in any way that the file system allows.
///
/// What a test does to it (poner, contenido...) is no operation, does not fail, and lasts.
class DiscoSimulado : public Disco {
 public:
    explicit DiscoSimulado(SistemaDeFicheros sistema = SistemaDeFicheros::kExt4)
        : sistema_(sistema) {}

    // The test's hand.
    /// Together with the folders above it.
    void crearCarpeta(const std::filesystem::path& ruta);
    /// A file that has been there for long; its folder comes with it.
    void poner(const std::filesystem::path& ruta, std::string contenido);
    /// Somebody takes the file away.
    void quitar(const std::filesystem::path& ruta);
    /// As programs see it. Throws std::out_of_range when there is no such file.
    const std::string& contenido(const std::filesystem::path& ruta) const;
    bool existe(const std::filesystem::path& ruta) const;
    /// Of the files and folders in a folder, in order.
    std::vector<std::string> nombres(const std::filesystem::path& carpeta) const;
    /// Whether a power cut would leave everything as it is seen.
    bool todoVolcado() const;

    // What happens.
    std::int64_t operaciones() const { return operaciones_; }
    /// Before each operation. What it throws, the operation does; MuerteSubita kills.
    std::function<void(const Operacion&)> alOperar;
    /// With the time that somebody waits.
    std::function<void(std::chrono::milliseconds)> alEsperar;
    /// All that was waited, of which retener takes its time.
    std::chrono::milliseconds esperado() const { return esperado_; }

    // Faults.
    using Condicion = std::function<bool(const Operacion&)>;
    static constexpr int kSiempre = -1;
    /// The next operations that meet the condition fail, so many times.
    void fallar(ErrorFichero::Causa causa, Condicion condicion, int veces = 1,
                Momento momento = Momento::kAntes);
    /// The same for all operations of a type, on whichever file.
    void fallar(ErrorFichero::Causa causa, Operacion::Tipo tipo, int veces = 1,
                Momento momento = Momento::kAntes);
    /// Room for so many bytes in all files together: what does not fit is written in part.
    void capacidad(std::uint64_t bytes) { capacidad_ = bytes; }
    /// Somebody else holds the file for a time: it is neither opened, renamed, replaced nor
    /// removed.
    void retener(const std::filesystem::path& ruta, std::chrono::milliseconds tiempo);
    /// The folder and all below it are gone (a drive pulled out), or back as they were.
    void esconder(const std::filesystem::path& carpeta, bool escondida = true);
    /// Takes back all faults, retener, esconder and capacidad.
    void sanar();

    // Ends.
    /// The process is killed at the operation of this number; see operaciones.
    void morirEn(std::int64_t operacion, Momento momento = Momento::kAntes);
    /// The process is killed now. The disk throws MuerteSubita at whoever uses it, and stays as it
    /// is seen.
    void morir() { vivo_ = false; }
    /// The same, and what had not been flushed gets lost, or not, as the seed says.
    void cortarCorriente(std::uint64_t semilla);
    bool vivo() const { return vivo_; }
    /// A new process begins. Files that the old one had open stay dead.
    void revivir();

    std::unique_ptr<Fichero> abrir(const std::filesystem::path& ruta, Modo modo) override;
    std::unique_ptr<Fichero> nuevo(const std::filesystem::path& ruta) override;
    Clase queHay(const std::filesystem::path& ruta) override;
    std::filesystem::path destinoReal(const std::filesystem::path& ruta) override;
    std::vector<std::filesystem::path> listar(const std::filesystem::path& carpeta) override;
    void renombrar(const std::filesystem::path& origen,
                   const std::filesystem::path& destino) override;
    void borrar(const std::filesystem::path& ruta) override;
    void sincronizarCarpeta(const std::filesystem::path& carpeta) override;
    void esperar(std::chrono::milliseconds tiempo) override;
    std::uint32_t proceso() const override;

 private:
    class Abierto;
    class Turno;

    /// Normal, without a separator at its end.
    using Nombre = std::string;
    using Nombres = std::map<Nombre, std::shared_ptr<FicheroSimulado>>;
    /// One step of the folders: a name goes, a name comes, or both at once.
    struct Paso {
        std::optional<Nombre> va;
        std::optional<Nombre> viene;
        std::shared_ptr<FicheroSimulado> fichero;
    };
    struct Fallo {
        ErrorFichero::Causa causa;
        Condicion condicion;
        int veces;
        Momento momento;
    };

    static Nombre nombreDe(const std::filesystem::path& ruta);
    static Nombre carpetaDe(const Nombre& nombre);
    static void aplicar(Nombres& nombres, const Paso& paso);

    void dar(Paso paso);
    void volcarNombres(const Nombre& carpeta);
    bool escondido(const Nombre& nombre) const;
    bool hayCarpeta(const Nombre& nombre) const;
    std::shared_ptr<FicheroSimulado> buscar(const Nombre& nombre) const;
    void exigirSitio(const std::filesystem::path& ruta) const;
    void exigirSuelto(const std::filesystem::path& ruta) const;
    std::shared_ptr<FicheroSimulado> exigirFichero(const std::filesystem::path& ruta) const;
    std::unique_ptr<Fichero> crear(const std::filesystem::path& ruta, Modo modo);
    std::uint64_t sitioLibre() const;
    Fallo* falloDe(const Operacion& operacion);

    SistemaDeFicheros sistema_;
    std::set<Nombre> carpetas_;
    Nombres vistos_;
    Nombres enDisco_;
    std::vector<Paso> pasos_;  // seen, but not on the disk yet

    std::vector<Fallo> fallos_;
    std::optional<std::uint64_t> capacidad_;
    std::map<Nombre, std::chrono::milliseconds> retenidos_;
    std::set<Nombre> escondidas_;
    std::chrono::milliseconds esperado_{0};

    std::int64_t operaciones_ = 0;
    std::int64_t ultima_ = 0;  // the operation to die at; 0: none
    Momento momento_ = Momento::kAntes;
    bool vivo_ = true;
    std::uint32_t vida_ = 1;
};

}  // namespace bn
