#include "screens/network/SuffixesDialog.h"

#include "ui/InputItem.h"

namespace Tolm {

namespace {
constexpr int WIDTH = 72;
constexpr int HEIGHT = 13;
constexpr int TITLE_HEIGHT = 8;
constexpr int FIELD_WIDTH = 50;
}  // namespace

SuffixesDialog::SuffixesDialog(Frame* parent, std::string suffixes)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _suffixes(std::move(suffixes)), _form(*this)
{
    _row = &_form.AddInput(Text(TextId::Suffixes), _suffixes, FIELD_WIDTH, KeyFilters::Chars(KeyFilters::DomainList));
}

int SuffixesDialog::Execute()
{
    SetTitle(Text(TextId::CustomDNSSuffixes));
    SetText(Text(TextId::SuffixesText));
    SetFooter(FOOTER_OK_CANCEL);
    Form::Handlers handlers;
    handlers.accept = [this] {
        _suffixes = _row->Value();
        return true;
    };
    return _form.Run(handlers);
}

}  // namespace Tolm
