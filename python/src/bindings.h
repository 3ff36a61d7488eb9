#pragma once

/// \file
/// What each file of bindings adds to the extension module.

#include <pybind11/pybind11.h>

void bind_messages(pybind11::module_& module);
void bind_settings(pybind11::module_& module);
void bind_flash(pybind11::module_& module);
void bind_flash_lists(pybind11::module_& module);
void bind_sfdp(pybind11::module_& module);
void bind_user_flash(pybind11::module_& module);
void bind_names(pybind11::module_& module);
void bind_suggestions(pybind11::module_& module);
void bind_parts(pybind11::module_& module);
void bind_tables(pybind11::module_& module);
void bind_hps(pybind11::module_& module);
void bind_params(pybind11::module_& module);
