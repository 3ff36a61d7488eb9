#include "captured_run.h"

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#endif

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "scratch.h"

namespace {

#if defined(_WIN32)
int copy_of(int descriptor) {
    return _dup(descriptor);
}
void put_in_place(int descriptor, int place) {
    _dup2(descriptor, place);
}
void close_descriptor(int descriptor) {
    _close(descriptor);
}
int number_of(std::FILE* stream) {
    return _fileno(stream);
}
#else
int copy_of(int descriptor) {
    return dup(descriptor);
}
void put_in_place(int descriptor, int place) {
    dup2(descriptor, place);
}
void close_descriptor(int descriptor) {
    close(descriptor);
}
int number_of(std::FILE* stream) {
    return fileno(stream);
}
#endif

/// What a sanitizer reports ends the tests: it must not end up among what is captured.
void keep_reports_of_sanitizers() {
#if defined(__SANITIZE_ADDRESS__)
    static const int standard_error = copy_of(number_of(stderr));
    __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(standard_error)));
#endif
}

/// While it lives, what is written to a standard stream goes into a file. Files, unlike pipes, never fill up.
class CAPTURED_STREAM {
public:
    CAPTURED_STREAM(std::FILE* stream, const std::string& file)
        : m_stream(stream), m_file(std::fopen(file.c_str(), "w+b")) {
        if (m_file == nullptr) {
            throw std::runtime_error("no file for what is written: " + file);
        }
        std::fflush(m_stream);
        m_former = copy_of(number_of(m_stream));
        put_in_place(number_of(m_file), number_of(m_stream));
    }
    ~CAPTURED_STREAM() {
        give_back();
        std::fclose(m_file);
    }
    CAPTURED_STREAM(const CAPTURED_STREAM&) = delete;
    CAPTURED_STREAM& operator=(const CAPTURED_STREAM&) = delete;

    /// Ends it, and gives what was written.
    std::string text() {
        give_back();
        std::rewind(m_file);
        std::string all;
        char chunk[1 << 14];
        for (std::size_t count = 0; (count = std::fread(chunk, 1, sizeof chunk, m_file)) > 0;) {
            all.append(chunk, count);
        }
        return all;
    }

private:
    void give_back() {
        if (m_former >= 0) {
            std::fflush(m_stream);
            put_in_place(m_former, number_of(m_stream));
            close_descriptor(m_former);
            m_former = -1;
        }
    }

    std::FILE* m_stream;
    std::FILE* m_file;
    int m_former = -1;
};

/// While it lives, std::cin reads the text.
class TYPED_INPUT {
public:
    explicit TYPED_INPUT(const std::string& text) : m_text(text), m_former(std::cin.rdbuf(m_text.rdbuf())) {
        std::cin.clear();
    }
    ~TYPED_INPUT() {
        std::cin.rdbuf(m_former);
        std::cin.clear();
    }
    TYPED_INPUT(const TYPED_INPUT&) = delete;
    TYPED_INPUT& operator=(const TYPED_INPUT&) = delete;

private:
    std::istringstream m_text;
    std::streambuf* m_former;
};

/// While it lives, a variable of the environment is not set.
class UNSET_VARIABLE {
public:
    explicit UNSET_VARIABLE(const char* name) : m_name(name) {
        if (const char* value = std::getenv(name)) {
            m_former = value;
            set("");
        }
    }
    ~UNSET_VARIABLE() {
        if (m_former) {
            set(m_former->c_str());
        }
    }
    UNSET_VARIABLE(const UNSET_VARIABLE&) = delete;
    UNSET_VARIABLE& operator=(const UNSET_VARIABLE&) = delete;

private:
    void set(const char* value) const {
#if defined(_WIN32)
        _putenv_s(m_name, value);
#else
        *value == '\0' ? unsetenv(m_name) : setenv(m_name, value, 1);
#endif
    }

    const char* m_name;
    std::optional<std::string> m_former;
};

}  // namespace

PROCESS_RESULT run_captured(const std::function<int()>& operation, const std::string& input) {
    static const SCRATCH scratch;
    keep_reports_of_sanitizers();
    const UNSET_VARIABLE configuration("TESSARY_CONFIG_FILE");  // which keeps other tests from the files there are
    const TYPED_INPUT typed(input);
    CAPTURED_STREAM output(stdout, scratch.path("output"));
    CAPTURED_STREAM errors(stderr, scratch.path("errors"));
    PROCESS_RESULT result;
    result.exit_code = operation();
    result.output = output.text();
    result.errors = errors.text();
    return result;
}
