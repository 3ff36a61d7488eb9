#include "bindings.h"

PYBIND11_MODULE(_pgmdev, module) {
    // The reporters of the library are those of the process, and call back into the interpreter that has set them.
    if (PyInterpreterState_Get() != PyInterpreterState_Main()) {
        throw pybind11::import_error("pgmdev works in the main interpreter of a process, not in a second one");
    }
    for (const auto bind : {bind_messages, bind_settings, bind_flash, bind_sfdp, bind_user_flash, bind_names,
                            bind_parts, bind_tables, bind_hps, bind_params}) {
        bind(module);
    }
}
