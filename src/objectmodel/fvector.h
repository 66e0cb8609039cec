#pragma once

#include <initializer_list>
#include <utility>
#include <vector>

namespace Morvex {

/// Array counterpart of FList: append, access by index, traversal in order.
template <typename T>
class FVector
{
public:
    using value_type = T;
    using const_iterator = typename std::vector<T>::const_iterator;
    using iterator = typename std::vector<T>::iterator;

    FVector() = default;
    FVector(std::initializer_list<T> elements)
        : m_elements(elements)
    {
    }

    void append(const T &element) { m_elements.push_back(element); }
    void append(T &&element) { m_elements.push_back(std::move(element)); }
    void push_back(const T &element) { append(element); }
    void clear() { m_elements.clear(); }

    bool isEmpty() const { return m_elements.empty(); }
    int count() const { return static_cast<int>(m_elements.size()); }

    const T &at(int index) const { return m_elements[static_cast<std::size_t>(index)]; }
    T &operator[](int index) { return m_elements[static_cast<std::size_t>(index)]; }
    const T &operator[](int index) const { return at(index); }

    iterator begin() { return m_elements.begin(); }
    iterator end() { return m_elements.end(); }
    const_iterator begin() const { return m_elements.begin(); }
    const_iterator end() const { return m_elements.end(); }

    friend bool operator==(const FVector &a, const FVector &b)
    {
        return a.m_elements == b.m_elements;
    }

private:
    std::vector<T> m_elements;
};

} // namespace Morvex
