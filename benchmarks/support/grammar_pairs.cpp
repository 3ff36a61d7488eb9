#include <stdexcept>

#include "catalog.h"
#include "grammar.h"
#include "support/names.h"

const NAME_PAIRS& grammar_pairs() {
    static const NAME_PAIRS PAIRS = [] {
        FAULTS faults;
        const GRAMMAR grammar = build_grammar(read_catalog(BENCHMARK_CATALOG_DIR, faults), "", faults);
        if (!faults.empty()) {
            throw std::runtime_error(faults.lines().front());
        }
        NAME_PAIRS all;
        for (std::size_t table = 0; table < grammar.size(); ++table) {
            for (const auto& [key, entries] : grammar[table]) {
                for (const std::string& entry : entries) {
                    all.emplace_back(std::to_string(table) + entry, key);
                }
            }
        }
        return all;
    }();
    return PAIRS;
}
