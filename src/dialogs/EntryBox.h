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

/// Whether a box shows a value in its normal form once it was taken, or the text as it was typed.
enum class Afterwards { Normal, AsTyped };

/// The rule of a box whose value goes to `target`, read by `read`. `show` is the text that the box was given
/// for a value: while that stands in it, the value stays as it is to the bit, which may have more digits.
/// Without `show` the box began empty.
template <typename T>
EntryBox::Rule StoreIn(T& target, std::function<Reading<T>(std::string_view)> read,
                       std::function<std::string(T)> show = {}, Afterwards afterwards = Afterwards::Normal)
{
    return [&target, read = std::move(read), show = std::move(show), afterwards](const std::string& typed) {
        const Reading<T> reading = read(typed);
        if (const auto* sentence = std::get_if<std::string>(&reading))
            return EntryBox::Verdict{false, *sentence};
        if (!show || typed != show(target))
            target = std::get<T>(reading);
        return EntryBox::Verdict{true, show && afterwards == Afterwards::Normal ? show(target) : typed};
    };
}
