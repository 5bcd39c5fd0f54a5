#include "search/def_table.h"

namespace vexor {

namespace {

// Finalizer that spreads all bits; neighbouring literals would otherwise fill neighbouring slots.
unsigned mix(unsigned h) {
    h ^= h >> 16;
    h *= 0x85ebca6bu;
    h ^= h >> 13;
    h *= 0xc2b2ae35u;
    return h ^ (h >> 16);
}

} // namespace

unsigned def_table::hash(int var) const {
    bool_var_body const body = m_bodies[static_cast<unsigned>(var)];
    switch (body.tag()) {
    case bool_var_body::decl_body:
        return mix(decl_hash(body.get_decl()));
    case bool_var_body::aux_body: {
        aux_bool_var_def const& def = *body.get_def();
        unsigned h = static_cast<unsigned>(def.m_kind);
        for (literal l : def.m_args) h = mix(h * 31 + l.hash());
        return h;
    }
    case bool_var_body::theory_body:
        break;
    }
    return body.is_null() ? mix(static_cast<unsigned>(var)) : 0;
}

bool def_table::equal(int a, int b) const {
    bool_var_body const x = m_bodies[static_cast<unsigned>(a)];
    bool_var_body const y = m_bodies[static_cast<unsigned>(b)];
    if (x.tag() != y.tag()) return false;
    switch (x.tag()) {
    case bool_var_body::decl_body:
        return x == y;
    case bool_var_body::aux_body: {
        aux_bool_var_def const& d = *x.get_def();
        aux_bool_var_def const& e = *y.get_def();
        if (d.m_kind != e.m_kind || d.m_args.size() != e.m_args.size()) return false;
        for (unsigned i = 0; i < d.m_args.size(); ++i)
            if (d.m_args[i] != e.m_args[i]) return false;
        return true;
    }
    case bool_var_body::theory_body:
        break;
    }
    return x.is_null() && y.is_null() && a == b;
}

int def_table::find(int probe) const {
    if (m_size == 0) return null_bool_var;
    unsigned const mask = m_slots.size() - 1;
    unsigned const h = hash(probe);
    for (unsigned i = h & mask; m_slots[i].m_var != null_bool_var; i = (i + 1) & mask)
        if (m_slots[i].m_hash == h && equal(m_slots[i].m_var, probe)) return m_slots[i].m_var;
    return null_bool_var;
}

void def_table::insert_core(slot const& member) {
    unsigned const mask = m_slots.size() - 1;
    unsigned i = member.m_hash & mask;
    while (m_slots[i].m_var != null_bool_var) i = (i + 1) & mask;
    m_slots[i] = member;
}

void def_table::insert(int var) {
    VEXOR_ASSERT(find(var) == null_bool_var);
    if ((m_size + 1) * 3 > m_slots.size() * 2) grow();
    insert_core({hash(var), var});
    ++m_size;
}

void def_table::grow() {
    svector<slot> old;
    old.swap(m_slots);
    m_slots.resize(old.empty() ? 64 : old.size() * 2, slot());
    for (slot const& member : old)
        if (member.m_var != null_bool_var) insert_core(member);
}

// Closes the gap by moving back each later member of the run that would otherwise become unreachable.
void def_table::erase(int var) {
    if (m_size == 0) return;
    unsigned const mask = m_slots.size() - 1;
    unsigned i = hash(var) & mask;
    while (m_slots[i].m_var != var) {
        if (m_slots[i].m_var == null_bool_var) return;
        i = (i + 1) & mask;
    }
    unsigned gap = i;
    for (unsigned j = (i + 1) & mask; m_slots[j].m_var != null_bool_var; j = (j + 1) & mask) {
        unsigned const h = m_slots[j].m_hash & mask;
        bool const reachable = ((j - h) & mask) < ((j - gap) & mask);
        if (reachable) continue;
        m_slots[gap] = m_slots[j];
        gap = j;
    }
    m_slots[gap] = slot();
    --m_size;
}

void def_table::reset() {
    m_slots.finalize();
    m_size = 0;
}

} // namespace vexor
