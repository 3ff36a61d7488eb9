#include "bindings.h"

PYBIND11_MODULE(_pgmdev, module) {
    // An interpreter behind the first one gets the module without this being run again.
    module.def("in_main_interpreter", [] { return PyInterpreterState_Get() == PyInterpreterState_Main(); });
    for (const auto bind : {bind_messages, bind_settings, bind_flash, bind_flash_lists, bind_sfdp, bind_user_flash,
                            bind_names, bind_suggestions, bind_parts, bind_tables, bind_hps, bind_params}) {
        bind(module);
    }
}
