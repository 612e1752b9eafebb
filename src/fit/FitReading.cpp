// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/FitReading.h"

#include "base/NumberText.h"
#include "base/StringTable.h"
#include "models/ModelTable.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace
{
/// Name in the report of the searched parameter `index` (from 0).
std::string NameOfSearched(std::int32_t model, std::size_t index)
{
    return LoadResString(model_table::InfoOf(model_table::Of(model).searched[index]).captionId);
}
} // namespace

bool FitReading::HasSecond() const
{
    return model_table::Of(model).searched.size() > 1;
}

std::string FitReading::StockName() const
{
    return NameOfSearched(model, 0);
}

std::string FitReading::SecondName() const
{
    return NameOfSearched(model, 1);
}

float FitReading::Catch(int period) const
{
    return method.UsingNos() ? data.CatchNums(period) : data.CatchWt(period);
}

float FitReading::TotalCatch(int period) const
{
    return method.UsingNos() ? data.TotCatchNums(period) : data.TotCatchWt(period);
}

double FitReading::TotalCatchSum() const
{
    double sum = 0.0;
    for (int period = 1; period <= Periods(); ++period)
        sum += std::max(0.0, static_cast<double>(TotalCatch(period))); // an empty cell holds -1
    return sum;
}

FitReading ReadFit(IMethod& method, const clsVeltData& data)
{
    const std::vector<double> estimates = method.FinalEsts();
    FitReading fit{.method = method, .data = data, .model = method.WhichMeth(), .fitOp = method.FitOp()};
    fit.stock = estimates.at(0);
    fit.q = estimates.at(1);
    if (fit.HasSecond())
        fit.second = estimates.at(2);
    if (fit.IsProduction())
        fit.msy = estimates.at(3);
    fit.firstStock = static_cast<double>(method.Nt(1));
    fit.finalStock = estimates.back();
    return fit;
}

namespace remark_text
{
std::string Short(double value)
{
    constexpr int kDigits = 4;
    std::array<char, 40> text{};
    const auto end =
        std::to_chars(text.begin(), text.end(), value, std::chars_format::scientific, kDigits - 1);
    double rounded = value;
    std::from_chars(text.begin(), end.ptr, rounded);
    return number_text::Plain(static_cast<float>(rounded));
}

std::string Listed(const std::vector<std::string>& items)
{
    std::string all;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0)
            all += i + 1 == items.size() ? " and " : ", ";
        all += items[i];
    }
    return all;
}

std::string Labels(const std::vector<int>& rows, const clsVeltData& data)
{
    constexpr std::size_t kMost = 8;
    std::vector<std::string> labels;
    labels.reserve(rows.size());
    for (const int row : rows)
        labels.push_back(std::to_string(data.MinTimeP() + row - 1));
    if (labels.size() > kMost) {
        const std::size_t more = labels.size() - kMost;
        labels.resize(kMost);
        labels.push_back(std::to_string(more) + " more");
    }
    return Listed(labels);
}
} // namespace remark_text
