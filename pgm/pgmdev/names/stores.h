#pragma once

/// \file
/// The two stores of the data compiled into the library, and the look-ups in them.
///
/// Each store is built when it is first needed, and is only read from then on. A build that fails is reported and
/// publishes nothing; the next call tries again.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "names/grammar.h"
#include "names/ordering_codes.h"

const GRAMMAR_STORE* get_grammar_store();
const OPN_STORE* get_opn_store();

/// Frees both stores, which no other thread may be using. What refers to their texts goes first (clean_up.h).
void free_stores();

/// Trims a name and converts it to upper case, in place: callers of the name operations rely on finding their own
/// string normalised afterwards, although they pass it as a constant. It must not be an object defined const, unless it
/// is normal already: then it is not written to.
void normalize_name(const std::string& name);

/// The key of a table whose entries hold `name`, which is normal, the first in key order; "" when none does. The text
/// belongs to the store.
std::string_view key_of(const GRAMMAR_STORE* store, PGMDEV_DDB_GRAMMAR_ENUM type, std::string_view name);

/// The same for any name. Normalises `name`.
std::string reverse_lookup(const GRAMMAR_STORE* store, PGMDEV_DDB_GRAMMAR_ENUM type, const std::string& name);

/// The entries of the key `name`. Normalises `name`.
std::vector<std::string> forward_lookup(const GRAMMAR_STORE* store, PGMDEV_DDB_GRAMMAR_ENUM type,
                                        const std::string& name);

/// The entries of a key that is normal, and all keys. The texts belong to the store.
std::vector<std::string_view> entries_of(const GRAMMAR_STORE* store, PGMDEV_DDB_GRAMMAR_ENUM type,
                                         std::string_view key);
std::vector<std::string_view> keys_of(const GRAMMAR_STORE* store, PGMDEV_DDB_GRAMMAR_ENUM type);

/// The part numbers by ordering-code index.
std::span<const DWORD> opn_list(const OPN_STORE* store);
