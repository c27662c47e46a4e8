#pragma once

#include <atomic>

/// Which of the two timed messages, sense_body and see, are waiting for the main thread.
///
/// A message passes three states: kept (its record is written), stamped (its time of arrival is
/// known too) and taken. Main takes stamped messages only, so whatever it decides upon, it knows
/// when that came. One word holds both kinds: a see is never taken while the sense_body before it
/// is being stamped. Lock-free. The sense thread calls keep, claim and stamp, the main thread
/// take.
class Arrivals {
public:
    /// Sets of kinds are sums of these.
    enum Kind : unsigned { NOTHING = 0, SENSE_BODY = 1, SEE = 2 };

    /// A record of this kind has been written; its stamp is still to come.
    void keep(Kind kind) {
        word_.fetch_and(~stampOf(kind));
        word_.fetch_or(kind);
    }

    /// What waits, stamped or not. Until it is stamped anew, main cannot take it.
    unsigned claim() {
        unsigned const before = word_.fetch_and(KEPT);
        return before & KEPT;
    }

    /// Hands over to main what waits of this kind.
    void stamp(Kind kind) { word_.fetch_or(stampOf(kind)); }

    /// The kinds that wait and are stamped; from now on they wait no more. To be called before the
    /// records are read, so that a message that comes meanwhile waits again.
    unsigned take() {
        unsigned before = word_;
        unsigned ready = 0;
        do {
            ready = before & (before >> STAMP_SHIFT) & KEPT;
        } while (!word_.compare_exchange_weak(before, before & ~(ready | stampOf(ready))));
        return ready;
    }

    bool isWaiting(Kind kind) const { return (word_ & kind) != 0; }

    /// Forgets what waits of this kind.
    void drop(Kind kind) { word_.fetch_and(~(kind | stampOf(kind))); }

private:
    static constexpr unsigned KEPT = SENSE_BODY | SEE;
    static constexpr unsigned STAMP_SHIFT = 2;

    static constexpr unsigned stampOf(unsigned kinds) { return kinds << STAMP_SHIFT; }

    std::atomic<unsigned> word_ = 0;
    static_assert(std::atomic<unsigned>::is_always_lock_free);
};

/// One kind of `Arrivals` in the form of the flags of the other messages: true while a message
/// waits.
class ArrivalFlag {
public:
    constexpr ArrivalFlag(Arrivals& arrivals, Arrivals::Kind kind)
        : arrivals_(arrivals), kind_(kind) {}
    ArrivalFlag(ArrivalFlag const&) = delete;
    ArrivalFlag& operator=(ArrivalFlag const&) = delete;

    operator bool() const { return arrivals_.isWaiting(kind_); }
    /// True: a record has been written. False: it is forgotten.
    bool operator=(bool waits) {
        if (waits) {
            arrivals_.keep(kind_);
        } else {
            arrivals_.drop(kind_);
        }
        return waits;
    }

private:
    Arrivals& arrivals_;
    Arrivals::Kind kind_;
};
