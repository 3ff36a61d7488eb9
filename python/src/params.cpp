#include <memory>
#include <string>
#include <vector>

#include "bindings.h"
#include "pgmdev_flash_ini.h"
#include "unlocked.h"
#include "values.h"

// The parameter container.

namespace {

using INI = PGMDEV_FLASH_INI;

PGMDEV_FLASH_INI_ENUM block_of(DWORD number) {
    return static_cast<PGMDEV_FLASH_INI_ENUM>(number);
}

py::object read_block(DWORD block) {
    DWORD size = 0;
    const std::unique_ptr<BYTE[]> data =
        unlocked([&] { return std::unique_ptr<BYTE[]>(INI::read_flash_ini_data(block_of(block), size)); });
    return data ? py::object(py::bytes(reinterpret_cast<const char*>(data.get()), size)) : py::none();
}

/// Without bytes the block goes.
bool write_block(DWORD block, const std::string& data) {
    std::vector<BYTE> bytes(data.begin(), data.end());
    return unlocked([&] {
        return INI::write_flash_ini_data(block_of(block), bytes.empty() ? nullptr : bytes.data(),
                                         static_cast<DWORD>(bytes.size()));
    });
}

/// An object of any of the types, where the library reads and writes it.
class PARAMETER {
public:
    explicit PARAMETER(DWORD type) : m_type(static_cast<PGMDEV_PARAM_TYPE>(type)) {}

    PGMDEV_PARAM_TYPE type() const { return m_type; }

    void* object() {
        switch (m_type) {
            case PGMDEV_PARAM_STRING:
                return &m_text;
            case PGMDEV_PARAM_BOOL:
                return &m_flag;
            case PGMDEV_PARAM_BYTE:
                return &m_byte;
            case PGMDEV_PARAM_WORD:
                return &m_word;
            case PGMDEV_PARAM_DWORD:
                return &m_dword;
            default:
                return &m_qword;
        }
    }

    void take(const py::object& value) {
        if (m_type == PGMDEV_PARAM_STRING) {
            m_text = value.cast<std::string>();
            return;
        }
        const auto number = value.cast<QWORD>();
        m_flag = number != 0;
        m_byte = static_cast<BYTE>(number);
        m_word = static_cast<WORD>(number);
        m_dword = static_cast<DWORD>(number);
        m_qword = number;
    }

    py::object value() const {
        switch (m_type) {
            case PGMDEV_PARAM_STRING:
                return to_python(m_text);
            case PGMDEV_PARAM_BOOL:
                return to_python(m_flag);
            case PGMDEV_PARAM_BYTE:
                return to_python(m_byte);
            case PGMDEV_PARAM_WORD:
                return to_python(m_word);
            case PGMDEV_PARAM_DWORD:
                return to_python(m_dword);
            default:
                return to_python(m_qword);
        }
    }

private:
    PGMDEV_PARAM_TYPE m_type;
    std::string m_text;
    bool m_flag = false;
    BYTE m_byte = 0;
    WORD m_word = 0;
    DWORD m_dword = 0;
    QWORD m_qword = 0;
};

/// The value of that type at a position, and the position behind it; None: the block does not hold it whole.
py::object value_at(const std::string& data, DWORD position, DWORD type) {
    PARAMETER parameter(type);
    const PGMDEV_PARAM_TYPE wanted = parameter.type();
    void* object = parameter.object();
    const auto size = static_cast<DWORD>(data.size());
    const bool whole =
        INI::assign_flash_ini_data(reinterpret_cast<const BYTE*>(data.data()), position, size, 1, &wanted, &object);
    return whole && position <= size ? py::object(py::make_tuple(parameter.value(), position)) : py::none();
}

py::bytes value_bytes(DWORD type, const py::object& value) {
    PARAMETER parameter(type);
    parameter.take(value);
    DWORD size = 0;
    INI::calculate_flash_ini_data_size(size, parameter.type(), parameter.object());
    std::vector<BYTE> bytes(size);
    DWORD position = 0;
    INI::fillup_flash_ini_data(bytes.data(), position, parameter.type(), parameter.object());
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

py::object value_text(DWORD type, const py::object& value, bool hex) {
    PARAMETER parameter(type);
    parameter.take(value);
    return to_python(INI::print_flash_ini_data(parameter.type(), hex, parameter.object()));
}

/// Keeps other writers out, from acquiring to releasing, which the same thread does.
class CONTAINER_LOCK {
public:
    /// False: another writer had it all the time.
    bool acquire() {
        m_lock = unlocked([] { return std::make_unique<PGMDEV_FLASH_INI_LOCK>(); });
        const bool held = m_lock->is_held();
        if (!held) {
            release();
        }
        return held;
    }
    void release() {
        unlocked([this] { m_lock.reset(); });
    }

private:
    std::unique_ptr<PGMDEV_FLASH_INI_LOCK> m_lock;
};

}  // namespace

void bind_params(py::module_& module) {
    module.attr("BLOCK_NAMES") = list_of(PGMDEV_FLASH_INI_NAMES);
    module.def("read_block", read_block);
    module.def("write_block", write_block);
    module.def("value_at", value_at);
    module.def("value_bytes", value_bytes);
    module.def("value_text", value_text);
    py::class_<CONTAINER_LOCK>(module, "ContainerLock")
        .def(py::init<>())
        .def("acquire", &CONTAINER_LOCK::acquire)
        .def("release", &CONTAINER_LOCK::release);
}
