#pragma once

#include <initializer_list>
#include <list>
#include <utility>

namespace Morvex {

/// List with insertion at the end and traversal in order; elements keep their address until they
/// are removed.
template <typename T>
class FList
{
public:
    using value_type = T;
    using const_iterator = typename std::list<T>::const_iterator;
    using iterator = typename std::list<T>::iterator;

    FList() = default;
    FList(std::initializer_list<T> elements)
        : m_elements(elements)
    {
    }

    void append(const T &element) { m_elements.push_back(element); }
    void append(T &&element) { m_elements.push_back(std::move(element)); }
    void push_back(const T &element) { append(element); }
    void clear() { m_elements.clear(); }

    bool isEmpty() const { return m_elements.empty(); }
    int count() const { return static_cast<int>(m_elements.size()); }

    const T &first() const { return m_elements.front(); }
    const T &last() const { return m_elements.back(); }

    iterator begin() { return m_elements.begin(); }
    iterator end() { return m_elements.end(); }
    const_iterator begin() const { return m_elements.begin(); }
    const_iterator end() const { return m_elements.end(); }

    friend bool operator==(const FList &a, const FList &b) { return a.m_elements == b.m_elements; }

private:
    std::list<T> m_elements;
};

} // namespace Morvex
