// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Reading.h"

#include <QLineEdit>
#include <functional>
#include <string>
#include <utility>

/// One line of a form that knows the rule of its field. It selects its whole text on getting the focus and
/// says when the user leaves it; it shows no message itself, the form does.
class EntryBox : public QLineEdit
{
    Q_OBJECT

public:
    /// What the rule says of a typed text.
    struct Verdict {
        bool taken = false;
        std::string text; ///< taken: the text to show from now on; refused: the sentence, possibly empty
    };
    using Rule = std::function<Verdict(const std::string& typed)>;

    /// `digits`: how many figures the box is wide enough for.
    EntryBox(const char* name, int digits, Rule rule, QWidget* parent = nullptr);

    /// Asks the rule about the present text; a text that is taken may be rewritten in its normal form.
    Verdict Judge();

signals:
    /// The user went elsewhere in the form, by key or mouse.
    void Left(Qt::FocusReason reason);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    Rule m_rule;
};

/// The rule of a box whose value goes to `target`, read by `read`. With `show` the box then shows the value
/// in its normal form, which leaves the value as it is to the bit when it is read once more; without it the
/// text stays as it was typed.
template <typename T>
EntryBox::Rule StoreIn(T& target, std::function<Reading<T>(std::string_view)> read,
                       std::function<std::string(T)> show = {})
{
    return [&target, read = std::move(read), show = std::move(show)](const std::string& typed) {
        const Reading<T> reading = read(typed);
        if (const auto* sentence = std::get_if<std::string>(&reading))
            return EntryBox::Verdict{false, *sentence};
        if (!show || typed != show(target))
            target = std::get<T>(reading);
        return EntryBox::Verdict{true, show ? show(target) : typed};
    };
}

/// `rule` for a box that begins with the text `shown` for `value`, which may have more digits: while that
/// text stands in it, or stands in it again, the value is the one it began with, to the bit.
template <typename T>
EntryBox::Rule KeepGiven(T& value, std::string shown, EntryBox::Rule rule)
{
    return
        [&value, given = value, shown = std::move(shown), rule = std::move(rule)](const std::string& typed) {
            EntryBox::Verdict verdict = rule(typed);
            if (verdict.taken && typed == shown)
                value = given;
            return verdict;
        };
}
