#pragma once

#include <memory>
#include <utility>
#include <vector>

namespace vantro::model {

/// A list that never changes and is shared by all its copies: copying one costs a reference count,
/// whatever its length. To change it, make another of a changed copy of `list()`. Equal means equal
/// elements; copies of each other are told equal without looking at them. Any thread.
template <typename Element>
class SharedList {
  public:
    using List = std::vector<Element>;
    using value_type = Element;

    SharedList() : SharedList(List{}) {}
    SharedList(List list) : m_list(std::make_shared<const List>(std::move(list))) {}

    const List& list() const { return *m_list; }
    operator const List&() const { return *m_list; }
    auto begin() const { return m_list->begin(); }
    auto end() const { return m_list->end(); }
    auto size() const { return m_list->size(); }
    auto data() const { return m_list->data(); }
    bool empty() const { return m_list->empty(); }
    const Element& operator[](std::size_t index) const { return (*m_list)[index]; }
    const Element& front() const { return m_list->front(); }
    const Element& back() const { return m_list->back(); }

    /// Whether both are copies of one list.
    bool isSameAs(const SharedList& other) const { return m_list == other.m_list; }
    bool operator==(const SharedList& other) const {
        return isSameAs(other) || *m_list == *other.m_list;
    }

  private:
    std::shared_ptr<const List> m_list; ///< never null
};

} // namespace vantro::model
