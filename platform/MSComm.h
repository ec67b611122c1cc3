// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "platform/Evento.h"

namespace bn {

/// A serial port that cannot be set up or opened. what() is UTF-8 Spanish and names the device.
class ErrorPuerto : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

/// What CommEvent answers while OnComm tells that characters have arrived.
inline constexpr int16_t kComEvReceive = 2;

/// The serial port control. Bytes travel as they are on the line, in std::string.
class MSComm {
 public:
    MSComm() = default;
    MSComm(const MSComm&) = delete;
    MSComm& operator=(const MSComm&) = delete;
    virtual ~MSComm() = default;

    /// Chooses the channel, 1 to 16. Throws ErrorPuerto.
    virtual void CommPort(int16_t numero) = 0;
    /// Speed, parity, data bits, stop bits, as in "9600,N,8,1". Throws ErrorPuerto.
    virtual void Settings(const std::string& ajustes) = 0;
    /// Opens (throws ErrorPuerto) or closes (never throws).
    virtual void PortOpen(bool abrir) = 0;
    virtual bool PortOpen() const = 0;
    /// Sends the bytes. On a port that has vanished this is silence, not an error.
    virtual void Output(const std::string& bytes) = 0;
    /// Everything received so far, and empties it.
    virtual std::string Input() = 0;
    /// 0 discards what was received and not yet read.
    virtual void InBufferCount(int16_t cero) = 0;
    /// Why OnComm was raised; kComEvReceive when characters have arrived.
    virtual int16_t CommEvent() const = 0;

    /// Delivered on the user-interface thread, as soon as one character has arrived; for what has
    /// come in one piece once for each carriage return, and once more for a rest without.
    Evento<> OnComm;
};

}  // namespace bn
