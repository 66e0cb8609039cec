#pragma once

#include <initializer_list>
#include <utility>

namespace Morvex {

/// What FList and FVector have in common: append, and traversal in order.
template <typename Container>
class FSequence
{
public:
    using value_type = typename Container::value_type;
    using const_iterator = typename Container::const_iterator;
    using iterator = typename Container::iterator;

    FSequence() = default;
    FSequence(std::initializer_list<value_type> elements)
        : m_elements(elements)
    {
    }

    void append(const value_type &element) { m_elements.push_back(element); }
    void append(value_type &&element) { m_elements.push_back(std::move(element)); }
    void push_back(const value_type &element) { append(element); }
    void clear() { m_elements.clear(); }

    bool isEmpty() const { return m_elements.empty(); }
    int count() const { return static_cast<int>(m_elements.size()); }

    const value_type &first() const { return m_elements.front(); }
    const value_type &last() const { return m_elements.back(); }

    iterator begin() { return m_elements.begin(); }
    iterator end() { return m_elements.end(); }
    const_iterator begin() const { return m_elements.begin(); }
    const_iterator end() const { return m_elements.end(); }

    friend bool operator==(const FSequence &a, const FSequence &b)
    {
        return a.m_elements == b.m_elements;
    }

protected:
    Container m_elements;
};

} // namespace Morvex
