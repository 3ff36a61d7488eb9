#include <memory>
#include <string>
#include <vector>

#include "bindings.h"
#include "pgmdev_param_value.h"
#include "unlocked.h"
#include "values.h"

// The parameter container.

namespace {

using INI = PGMDEV_FLASH_INI;

PGMDEV_FLASH_INI_ENUM block_of(DWORD number) {
    return static_cast<PGMDEV_FLASH_INI_ENUM>(number);
}

PGMDEV_PARAM_TYPE type_of(DWORD number) {
    return static_cast<PGMDEV_PARAM_TYPE>(number);
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

/// A value of Python as one of that type, which it fits.
PGMDEV_PARAM_VALUE parameter_from(DWORD type, const py::object& value) {
    PGMDEV_PARAM_VALUE parameter(type_of(type));
    if (parameter.type() == PGMDEV_PARAM_STRING) {
        parameter.set_text(text_of(value));
    } else {
        parameter.set_number(value.cast<QWORD>());
    }
    return parameter;
}

/// The value of that type at a position, and the position behind it; None: the block does not hold it whole.
py::object value_at(const std::string& data, DWORD position, DWORD type) {
    PGMDEV_PARAM_VALUE parameter(type_of(type));
    const auto size = static_cast<DWORD>(data.size());
    const bool whole = pgmdev_read_param(reinterpret_cast<const BYTE*>(data.data()), size, position, parameter);
    if (!whole || position > size) {
        return py::none();
    }
    const auto value = std::visit([](const auto& object) { return to_python(object); }, parameter.get());
    return py::make_tuple(value, position);
}

py::bytes value_bytes(DWORD type, const py::object& value) {
    PGMDEV_PARAM_VALUE parameter = parameter_from(type, value);
    std::vector<BYTE> bytes;
    pgmdev_append_param(bytes, parameter.type(), parameter.object());
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

py::object value_text(DWORD type, const py::object& value, bool hex) {
    PGMDEV_PARAM_VALUE parameter = parameter_from(type, value);
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
