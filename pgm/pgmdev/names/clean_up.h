#pragma once

/// Frees the indexes and both stores; runs by itself when the library is unloaded. No other thread may be using them.
void free_stores_and_indexes();
