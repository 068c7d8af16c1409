#pragma once

namespace jostle::standalone {

/// Deleter for what a C library destroys by a function of its own, as in
/// `std::unique_ptr<hb_buffer_t, Destroy<hb_buffer_destroy>>`.
template<auto destroy>
struct Destroy {
    template<class T>
    void operator()(T* thing) const {
        destroy(thing);
    }
};

} // namespace jostle::standalone
