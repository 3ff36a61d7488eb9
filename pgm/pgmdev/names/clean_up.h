#pragma once

/// Frees the indexes and both stores; runs by itself when the library is unloaded, but not when the process ends: its
/// static objects may still ask. No other thread may be using them.
void free_stores_and_indexes();
