#pragma once

namespace support {

/// Reaches a private member from a test without a word about it in the class. Explicit
/// instantiation doesn't check access:
///
///     using Handle = support::PrivateMember<struct HandleTag, Inside *Outer::*>;
///     template struct support::OpenMember<Handle, &Outer::m_pHandle>;
///     ... outer.*member(Handle{}) = nullptr;
// One function for each tag is the point of the friend declaration.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-template-friend"
template <typename Tag, typename Pointer>
struct PrivateMember {
    using Type = Pointer;
    friend Type member(PrivateMember);
};
#pragma GCC diagnostic pop

template <typename Member, typename Member::Type pointer>
struct OpenMember {
    friend typename Member::Type member(Member) { return pointer; }
};

}  // namespace support
