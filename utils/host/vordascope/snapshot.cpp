// The tables of a snapshot: names, copies, finding fields, and writing it again.
#include "snapshot.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>
#include <system_error>

namespace vordascope
{

namespace
{

constexpr size_t SLOTS_MIN = 64;
constexpr size_t PROBES_MAX = 64; // whoever finds as many slots taken joins the crowd

uint32_t hash_of(std::string_view name, uint32_t seed)
{
    constexpr uint64_t MIX = 0x9e3779b97f4a7c15;
    uint64_t hash = (uint64_t{seed} + 1) * MIX ^ name.size();
    size_t i = 0;
    for (uint64_t word; i + sizeof(word) <= name.size(); i += sizeof(word)) {
        memcpy(&word, name.data() + i, sizeof(word));
        hash = (hash ^ word) * MIX;
        hash ^= hash >> 32;
    }
    uint64_t rest = 0;
    memcpy(&rest, name.data() + i, name.size() - i);
    hash = (hash ^ rest) * MIX;
    return static_cast<uint32_t>(hash >> 32);
}

// Takes "[12]" off the beginning of a text.
bool take_index(std::string_view &text, uint32_t &index)
{
    if (!text.starts_with('['))
        return false;
    const char *const end = text.data() + text.size();
    const auto [after, error] = std::from_chars(text.data() + 1, end, index);
    if (error != std::errc() || after == end || *after != ']')
        return false;
    text.remove_prefix(static_cast<size_t>(after + 1 - text.data()));
    return true;
}

// What the indexes behind a field's key select.
Place select(const Field &field, std::string_view indexes)
{
    Place place = {&field, 0, field.count};
    uint32_t index;
    if (indexes.empty())
        return place;
    if (field.shape == Shape::scalar || !take_index(indexes, index))
        return {};
    if (field.shape == Shape::rows) {
        if (index >= (field.count + field.columns - 1) / field.columns)
            return {};
        place.first = index * field.columns;
        place.count = std::min(field.columns, field.count - place.first);
        if (indexes.empty())
            return place;
        if (!take_index(indexes, index))
            return {};
    }
    if (!indexes.empty() || index >= place.count)
        return {};
    return {&field, place.first + index, 1};
}

// Looks in one node for a key and up to two indexes.
Place find_in(const Snapshot &snapshot, NodeIndex node, std::string_view name)
{
    size_t key_size = name.size();
    for (int indexes = 0; indexes <= 2; indexes++) {
        const FieldIndex field = snapshot.field(node, name.substr(0, key_size));
        if (field != NONE)
            if (const Place place = select(snapshot.fields[field], name.substr(key_size));
                place.field != nullptr)
                return place;
        key_size = name.substr(0, key_size).rfind('[');
        if (key_size == std::string_view::npos)
            break;
    }
    return {};
}

} // namespace

void Head::replace_body(std::string_view to, const std::vector<Part> &parts)
{
    const std::string_view old = text;
    const char *const begin = body.front().text.data();
    body.clear();
    move_text(to, [&](const char *p) {
        return p < begin ? to.data() + (p - old.data())
                         : to.data() + to.size() - (old.data() + old.size() - p);
    });
    body = parts;
}

Snapshot::Snapshot(const Snapshot &other)
    : Head(other), fields(other.fields), values(other.values),
      nodes_(other.nodes_.begin(),
             other.nodes_.begin() + static_cast<ptrdiff_t>(other.node_count_)),
      node_count_(other.node_count_), slots_(other.slots_), used_(other.used_),
      crowd_(other.crowd_), own_text_(other.text.begin(), other.text.end())
{
    const auto own = [this, &other](const char *p) {
        return own_text_.data() + (p - other.text.data());
    };
    const auto own_view = [&own](std::string_view &view) {
        if (!view.empty())
            view = {own(view.data()), view.size()};
    };
    move_text({own_text_.data(), own_text_.size()}, own);
    for (Value &value : values)
        value.begin = own(value.begin);
    for (Field &field : fields) {
        own_view(field.key);
        own_view(field.note);
    }
}

NodeIndex Snapshot::child(NodeIndex parent, std::string_view name) const
{
    const uint32_t member = look_up(parent, name);
    return member != NONE && member % 2 != 0 ? member / 2 : NONE;
}

FieldIndex Snapshot::field(NodeIndex node, std::string_view key) const
{
    const uint32_t member = look_up(node, key);
    return member != NONE && member % 2 == 0 ? member / 2 : NONE;
}

NodeIndex Snapshot::same_node(const Snapshot &other, NodeIndex node) const
{
    std::vector<NodeIndex> way;
    for (; node != 0; node = other.node(node).parent)
        way.push_back(node);
    NodeIndex same = 0;
    for (; !way.empty() && same != NONE; way.pop_back())
        same = child(same, other.node(way.back()).name);
    return same;
}

const Field *Snapshot::same_field(const Snapshot &other, const Field &field) const
{
    const NodeIndex node = same_node(other, field.node);
    const FieldIndex index = node != NONE ? this->field(node, field.key) : NONE;
    return index != NONE ? &fields[index] : nullptr;
}

std::string Snapshot::path(NodeIndex node, char between) const
{
    std::string result = nodes_[node].name;
    for (NodeIndex above = nodes_[node].parent; above != 0; above = nodes_[above].parent)
        result.insert(0, nodes_[above].name + between);
    return result;
}

std::string Snapshot::path(const Field &field) const
{
    std::string result = path(field.node);
    result += '.';
    return result += field.key;
}

std::string Snapshot::item(const Field &field) const
{
    NodeIndex node = field.node;
    while (nodes_[node].block)
        node = nodes_[node].parent;
    return path(node);
}

std::string Snapshot::block(const Field &field) const
{
    std::string result;
    for (NodeIndex node = field.node; nodes_[node].block; node = nodes_[node].parent)
        result.insert(0, nodes_[node].name + (result.empty() ? "" : " / "));
    return result;
}

void Snapshot::clear()
{
    fields.clear();
    values.clear();
    slots_.assign(std::max(slots_.size(), SLOTS_MIN), Slot{0, NONE});
    used_ = 0;
    crowd_.clear();
    node_count_ = 0;
    add_node(0, "", false);
}

NodeIndex Snapshot::add_node(NodeIndex parent, std::string_view name, bool block)
{
    const auto index = static_cast<NodeIndex>(node_count_++);
    if (index == nodes_.size())
        nodes_.emplace_back();
    Node &node = nodes_[index];
    node.parent = parent;
    node.block = block;
    node.name = name;
    node.members.clear();
    return index;
}

FieldIndex Snapshot::add_field(const Field &field)
{
    const uint32_t hash = hash_of(field.key, field.node);
    if (look_up(field.node, field.key, hash) != NONE)
        return NONE;
    const auto index = static_cast<FieldIndex>(fields.size());
    fields.push_back(field);
    nodes_[field.node].members.push_back({index, false});
    enter(field.node, field.key, hash, index * 2);
    return index;
}

NodeIndex Snapshot::take_child(NodeIndex parent, std::string_view name, bool block)
{
    const uint32_t hash = hash_of(name, parent);
    const uint32_t known = look_up(parent, name, hash);
    if (known != NONE)
        return known % 2 != 0 ? known / 2 : NONE;
    const NodeIndex node = add_node(parent, name, block);
    nodes_[parent].members.push_back({node, true});
    enter(parent, name, hash, node * 2 + 1);
    return node;
}

bool Snapshot::is_member(uint32_t member, NodeIndex parent, std::string_view name) const
{
    const uint32_t index = member / 2;
    return member % 2 != 0 ? nodes_[index].parent == parent && nodes_[index].name == name
                           : fields[index].node == parent && fields[index].key == name;
}

uint32_t Snapshot::look_up(NodeIndex parent, std::string_view name) const
{
    return slots_.empty() ? NONE : look_up(parent, name, hash_of(name, parent));
}

uint32_t Snapshot::look_up(NodeIndex parent, std::string_view name, uint32_t hash) const
{
    const size_t mask = slots_.size() - 1;
    for (size_t probe = 0; probe < PROBES_MAX; probe++) {
        const Slot &slot = slots_[(hash + probe) & mask];
        if (slot.member == NONE)
            break;
        if (slot.hash == hash && is_member(slot.member, parent, name))
            return slot.member;
    }
    if (crowd_.empty())
        return NONE;
    const auto found = crowd_.find(std::pair(parent, name));
    return found != crowd_.end() ? found->second : NONE;
}

// Whoever chooses the names can fill neighbouring slots alone, so slots are no more than the quick
// way.
void Snapshot::enter(NodeIndex parent, std::string_view name, uint32_t hash, uint32_t member)
{
    if (2 * ++used_ >= slots_.size())
        grow();
    const size_t mask = slots_.size() - 1;
    for (size_t probe = 0; probe < PROBES_MAX; probe++) {
        Slot &slot = slots_[(hash + probe) & mask];
        if (slot.member == NONE) {
            slot = {hash, member};
            return;
        }
    }
    crowd_.emplace(std::pair(parent, std::string(name)), member);
}

void Snapshot::grow()
{
    std::vector<Slot> old(2 * slots_.size(), Slot{0, NONE});
    old.swap(slots_);
    const size_t mask = slots_.size() - 1;
    for (const Slot &slot : old) {
        if (slot.member == NONE)
            continue;
        size_t probe = 0;
        while (probe < PROBES_MAX && slots_[(slot.hash + probe) & mask].member != NONE)
            probe++;
        if (probe < PROBES_MAX) {
            slots_[(slot.hash + probe) & mask] = slot;
            continue;
        }
        const uint32_t index = slot.member / 2;
        if (slot.member % 2 != 0)
            crowd_.emplace(std::pair(nodes_[index].parent, nodes_[index].name), slot.member);
        else
            crowd_.emplace(std::pair(fields[index].node, std::string(fields[index].key)),
                           slot.member);
    }
}

Place find(const Snapshot &snapshot, std::string_view path)
{
    constexpr size_t NOWHERE = std::string_view::npos;
    struct Rest {
        NodeIndex node;
        std::string_view name;
    };
    std::vector<Rest> open = {{0, path}};
    while (!open.empty()) {
        const auto [node, name] = open.back();
        open.pop_back();
        if (const Place place = find_in(snapshot, node, name); place.field != nullptr)
            return place;
        // Blocks may have dots in their names, as keys have; the shortest is tried first.
        for (size_t dot = name.rfind('.'); dot != NOWHERE;
             dot = dot != 0 ? name.rfind('.', dot - 1) : NOWHERE) {
            const NodeIndex child = snapshot.child(node, name.substr(0, dot));
            if (child != NONE)
                open.push_back({child, name.substr(dot + 1)});
        }
    }
    return {};
}

void write(const Snapshot &snapshot, std::string &out)
{
    const char *p = snapshot.text.data();
    for (const Value &value : snapshot.values) {
        out.append(p, value.begin);
        if (value.kind == Kind::integer) {
            // Sign and magnitude are what the reader has understood.
            char digits[20];
            const auto end = std::to_chars(digits, std::end(digits), value.magnitude).ptr;
            if (value.negative())
                out += '-';
            out.append(digits, end);
        } else {
            out += value.text();
        }
        p = value.begin + value.size;
    }
    out.append(p, snapshot.text.data() + snapshot.text.size());
}

} // namespace vordascope
