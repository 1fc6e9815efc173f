#include "core/repository/siblingorder.h"

#include <algorithm>
#include <numeric>

namespace qv {

namespace {

std::string KeyOf(std::string_view parent, std::string_view table) {
    std::string key;
    key.reserve(parent.size() + table.size() + 1);
    return key.append(parent).append(1, '\0').append(table);
}

}  // namespace

void SiblingOrder::Fetch(StoreSession& session, std::int64_t project, std::int64_t revision) {
    session.FetchOrders(project, revision,
                        [this](std::string_view parent, std::string_view table, std::int64_t first, std::string_view ids) {
                            m_records[KeyOf(parent, table)] = {first, std::string(ids)};
                        });
}

const SiblingOrder::Record* SiblingOrder::Find(std::string_view parent, std::string_view table) const {
    if (m_records.empty()) return nullptr;
    const auto found = m_records.find(KeyOf(parent, table));
    return found == m_records.end() ? nullptr : &found->second;
}

void SiblingOrder::Arrange(const Record* record, const std::vector<std::string_view>& ids, std::vector<std::size_t>& places) const {
    places.resize(ids.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    if (!record) {
        const auto before = [&](std::size_t a, std::size_t b) { return ids[a] < ids[b]; };
        if (!std::is_sorted(places.begin(), places.end(), before)) std::stable_sort(places.begin(), places.end(), before);
        return;
    }
    std::unordered_map<std::string, std::size_t> ranks;
    for (std::string& id : Split(record->ids)) ranks.emplace(std::move(id), ranks.size());
    std::vector<std::size_t> rank(ids.size(), SIZE_MAX);
    for (std::size_t at = 0; at < ids.size(); ++at)
        if (const auto found = ranks.find(std::string(ids[at])); found != ranks.end()) rank[at] = found->second;
    std::stable_sort(places.begin(), places.end(),
                     [&](std::size_t a, std::size_t b) { return rank[a] != rank[b] ? rank[a] < rank[b] : ids[a] < ids[b]; });
}

std::string SiblingOrder::Join(const std::vector<std::string_view>& ids) {
    std::string text;
    for (const std::string_view& id : ids) {
        if (&id != &ids.front()) text += '\n';
        for (const char character : id) {
            if (character == '\n' || character == '\\') text += '\\';
            text += character == '\n' ? 'n' : character;
        }
    }
    return text;
}

std::vector<std::string> SiblingOrder::Split(std::string_view text) {
    std::vector<std::string> ids(1);
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '\n')
            ids.emplace_back();
        else if (text[at] != '\\' || at + 1 == text.size())
            ids.back() += text[at];
        else
            ids.back() += text[++at] == 'n' ? '\n' : text[at];
    }
    return ids;
}

}  // namespace qv
