#pragma once

#include <string>

#include "names/container.h"
#include "pgmdev/names/reference.h"

/// A data set of a test, with the texts of the grammar or those of the ordering codes.
class DATA_SET {
public:
    DATA_SET(std::string stream, std::size_t length, COMPILED_DATA_SET texts = grammar_data_set())
        : m_stream(std::move(stream)), m_set(texts) {
        m_set.stream = reinterpret_cast<const BYTE*>(m_stream.data());
        m_set.stream_length = static_cast<DWORD>(m_stream.size());
        m_set.length = static_cast<DWORD>(length);
    }
    explicit DATA_SET(const std::string& container, COMPILED_DATA_SET texts = grammar_data_set())
        : DATA_SET(ddb_reference::deflated(container), container.size(), texts) {}
    DATA_SET(const DATA_SET&) = delete;
    DATA_SET& operator=(const DATA_SET&) = delete;

    operator const COMPILED_DATA_SET&() const { return m_set; }

private:
    std::string m_stream;
    COMPILED_DATA_SET m_set;
};
