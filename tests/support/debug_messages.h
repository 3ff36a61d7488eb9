#pragma once

/// \file
/// What is said on the debug channel.

#include <string>
#include <vector>

#include "msg.h"

/// Takes note of every message while it lives, as "LOGGER LEVEL TEXT".
class DEBUG_MESSAGES {
public:
    DEBUG_MESSAGES()
        : m_previous(msg_set_debug_sink([this](const std::string& logger, int level, const std::string& text) {
              m_messages.push_back(logger + " " + std::to_string(level) + " " + text);
          })) {}
    ~DEBUG_MESSAGES() { msg_set_debug_sink(m_previous); }
    DEBUG_MESSAGES(const DEBUG_MESSAGES&) = delete;
    DEBUG_MESSAGES& operator=(const DEBUG_MESSAGES&) = delete;

    const std::vector<std::string>& all() const { return m_messages; }

private:
    std::vector<std::string> m_messages;
    MSG_DEBUG_SINK m_previous;
};
