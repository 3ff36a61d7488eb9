#pragma once

/// \file
/// Files that verbs write. Nothing that the user may miss is destroyed.

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files/file_bytes.h"
#include "files/origins.h"
#include "fio.h"
#include "terminal/failure.h"

/// The failure of an input that cannot be read; `obstacle` is a clause that says why.
using UNREADABLE_INPUT = std::function<COMMAND_FAILURE(const std::string& path, const std::string& obstacle)>;

/// Refuses, as wrong usage, an output that is one of the inputs, by whatever name or link, and one that replaces more
/// than a missing or empty file, or a file that begins with `beginning` ("": none such). With `force` any file but an
/// input may be replaced. `kind` is what people call such a file. Of an input that the system does not let anybody find
/// `unreadable` is thrown.
void confirm_output(const PLACE& output, const std::vector<std::string>& inputs, const std::string& kind,
                    std::string_view beginning, bool force, const UNREADABLE_INPUT& unreadable = unreadable_file);

/// A file that is replaced as a whole. What cannot be done throws COMMAND_FAILURE with the system's reason.
class OUTPUT_FILE {
public:
    explicit OUTPUT_FILE(PLACE place);

    /// Receives the contents.
    const FIO_PATH& temporary() const { return m_replacement->temporary(); }
    void write(std::span<const BYTE> contents);
    void commit();

    /// The failure to write the file.
    COMMAND_FAILURE failure(std::optional<MSG_INTERNAL_ERROR_REPORT> report = {}) const;

private:
    PLACE m_place;
    std::optional<FIO_REPLACEMENT> m_replacement;
};

/// The failure to write a file, with the system's reason.
COMMAND_FAILURE output_failure(const PLACE& place, std::optional<MSG_INTERNAL_ERROR_REPORT> report = {});
