#pragma once

#include "Foundation/SMCKeyData.h"

namespace corvane {

/// A system management controller, reached through the one call its driver accepts. Used by one
/// thread at a time (the reader's sensor pass); implementations need no lock.
class SMCTransport {
public:
    virtual ~SMCTransport() = default;
    /// Hands the controller `input` and lets it fill `output`, both whole records (the caller
    /// zeroes `output` first). 0 on success; any other value means the command failed and
    /// `output` holds nothing meaningful.
    virtual int call(const SMCRecord& input, SMCRecord& output) = 0;
};

}  // namespace corvane
