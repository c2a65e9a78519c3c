#pragma once

#include <string>

namespace Tolm {

// The message catalogue: every fixed text a screen shows, by number.
// Catalogues are never destroyed and are only reached through the pointer
// GetFactory hands out, so the one virtual slot is GetString and the
// destructor stays protected and non-virtual.
class StringFactory {
public:
    static constexpr unsigned LAST_ID = 273;
    static constexpr unsigned PRODUCT_VERSION_ID = 2;

    // The process-wide catalogue. The first successful lookup must name
    // "en_US"; after that every lookup returns that same catalogue whatever
    // locale is asked for. Returns nullptr when no catalogue exists.
    static StringFactory* GetFactory(const std::string& locale);

    // Never null; the empty text for an unknown identifier.
    virtual const char* GetString(unsigned id) = 0;

    // "<product> <version> (Tarn <release> Build <build>)", read once from
    // the host and cached; empty (and retried next time) when the host
    // cannot be asked.
    static const char* GetProductVersionString();

    StringFactory(const StringFactory&) = delete;
    StringFactory& operator=(const StringFactory&) = delete;

protected:
    StringFactory() = default;
    ~StringFactory() = default;
};

// The English catalogue, the only one there is.
class en_US_Factory final : public StringFactory {
public:
    en_US_Factory() = default;
    const char* GetString(unsigned id) override;
};

}  // namespace Tolm
