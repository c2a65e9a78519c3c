#pragma once
// Catalogue look-up for the system screens; no catalogue gives empty texts.
#include <string>

#include "ui/catalogue/StringFactory.h"

namespace Tolm {

inline std::string CatalogueText(StringFactory* factory, unsigned id)
{
    return factory ? factory->GetString(id) : "";
}

}  // namespace Tolm
