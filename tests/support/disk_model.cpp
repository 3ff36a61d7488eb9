#include "disk_model.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace {

/// What may have become of a body that was not synchronised, by what it was and what was written.
std::string lost(const std::string& kept, const std::string& /*now*/) {
    return kept;
}
std::string half(const std::string& /*kept*/, const std::string& now) {
    return now.substr(0, now.size() / 2);
}
std::string zeros(const std::string& /*kept*/, const std::string& now) {
    std::string bytes(now.size(), '\0');
    return bytes;
}
std::string whole(const std::string& /*kept*/, const std::string& now) {
    return now;
}
constexpr std::string (*FATES[])(const std::string& kept, const std::string& now) = {lost, half, zeros, whole};

}  // namespace

DISK_MODEL::DISK_MODEL(const DISK& files) {
    for (const auto& [path, contents] : files) {
        m_now[path] = m_bodies.size();
        m_bodies.push_back({contents, contents});
    }
    m_kept = m_now;
}

void DISK_MODEL::carry_out(const CHANGE& change, NAMES& names) {
    names.erase(change.gone);
    if (!change.come.empty()) {
        names[change.come] = change.body;
    }
}

void DISK_MODEL::change(const CHANGE& change) {
    carry_out(change, m_now);
    m_pending.push_back(change);
}

void DISK_MODEL::keep_names_of(const std::string& directory) {
    std::vector<CHANGE> later;
    for (const CHANGE& pending : m_pending) {
        const std::string& name = pending.come.empty() ? pending.gone : pending.come;
        if (std::filesystem::path(name).parent_path() == directory) {
            carry_out(pending, m_kept);
        } else {
            later.push_back(pending);
        }
    }
    m_pending = later;
}

void DISK_MODEL::apply(const RECORDED_CALL& call) {
    if (call.kind == RECORDED_CALL::CREATE || call.kind == RECORDED_CALL::CREATE_UNNAMED) {
        m_bodies.emplace_back();
        if (call.kind == RECORDED_CALL::CREATE) {
            change({"", call.path, m_bodies.size() - 1});
        } else {
            m_unnamed[call.path] = m_bodies.size() - 1;
        }
        return;
    }
    const bool is_named = m_now.contains(call.path);
    if (!is_named && !m_unnamed.contains(call.path)) {
        if (call.kind == RECORDED_CALL::SYNC) {
            keep_names_of(call.path);
        }
        return;  // others, such as a standard stream
    }
    const std::size_t place = (is_named ? m_now : m_unnamed).at(call.path);
    BODY& body = m_bodies[place];
    switch (call.kind) {
        case RECORDED_CALL::SYNC:
            body.kept = body.now;
            break;
        case RECORDED_CALL::LINK:
            change({"", call.other, place});
            break;
        case RECORDED_CALL::RENAME:
            change({call.path, call.other, place});
            break;
        case RECORDED_CALL::UNLINK:
            change({call.path, "", place});
            break;
        case RECORDED_CALL::RESIZE:
            body.now.resize(call.offset);
            break;
        default:
            body.now.resize(std::max(call.offset + call.other.size(), body.now.size()));
            body.now.replace(call.offset, call.other.size(), call.other);
    }
}

DISK DISK_MODEL::seen() const {
    DISK files;
    for (const auto& [path, body] : m_now) {
        files[path] = m_bodies[body].now;
    }
    return files;
}

std::vector<DISK> DISK_MODEL::possible() const {
    constexpr std::size_t MOST_PENDING = 12;
    if (m_pending.size() > MOST_PENDING) {
        throw std::length_error("more changes of names than can be tried in every combination");
    }
    std::vector<DISK> disks;
    for (std::size_t kept_changes = 0; kept_changes < std::size_t{1} << m_pending.size(); ++kept_changes) {
        NAMES names = m_kept;
        for (std::size_t i = 0; i < m_pending.size(); ++i) {
            if ((kept_changes >> i & 1U) != 0) {
                carry_out(m_pending[i], names);
            }
        }
        for (const auto fate : FATES) {
            DISK files;
            for (const auto& [path, place] : names) {
                const BODY& body = m_bodies[place];
                files[path] = body.now == body.kept ? body.now : fate(body.kept, body.now);
            }
            disks.push_back(files);
        }
    }
    return disks;
}
