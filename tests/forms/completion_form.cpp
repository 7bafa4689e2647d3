#include "forms/completion_form.h"

#include <algorithm>

namespace {

constexpr std::uint16_t kTemplate = 900;
constexpr std::int32_t kListId = 1001;

}  // namespace

CompletionForm::CompletionForm(const std::u16string& rows) {
    for (std::size_t start = 0; start < rows.size();) {
        const std::size_t end = std::min(rows.find(u'|', start), rows.size());
        mRows.push_back(rows.substr(start, end - start));
        start = end + 1;
    }
    RunDialog(nullptr, kTemplate, nullptr);
}

void CompletionForm::OnInitDialog() {
    XWindow::OnInitDialog();
    mList.Attach(platform::GetDlgItem(mWindow, kListId));
    for (const std::u16string& row : mRows) mList.AddItem(row.c_str(), nullptr);
}

std::intptr_t CompletionForm::PreTranslate(platform::Window, std::uint32_t message,
                                           platform::WordParameter word, platform::LongParameter value,
                                           std::int32_t* handled) {
    return mList.OnParentMessage(message, word, value, handled);
}

void CompletionForm::OnOK() {
    mTyped = mList.GetEditText(true).Text();
    platform::EndDialog(mWindow, 1);
}

void CompletionForm::OnCancel() {
    platform::EndDialog(mWindow, 0);
}

void CompletionForm::OnDestroy() {
    mList.Destroy();
}
