// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/OpenProject.h"

#include "base/StringTable.h"

void OpenProject::InitObjects()
{
    m_view.LetGoOfProject();
    m_fileOpen = m_fitEverMade = false;
    m_fits.reset();
    m_file.reset();
    m_data = std::make_unique<clsVeltData>(m_run);
    m_file = std::make_unique<ProjectFile>(*m_data);
    m_fits = std::make_unique<clsMethManager>(m_run);
    m_fits->Create(*m_data);
    m_fits->LogsInto(*m_file);
    m_view.ShowNoProject();
}

bool OpenProject::MayClearFit() const
{
    return !m_fits->MethDefined() ||
           m_run.reporter.Show({.text = LoadResString(1930), .buttons = Buttons::YesNo}) == Answer::Yes;
}

bool OpenProject::MayReplaceOnDisk() const
{
    return !m_file->ChangedOnDisk() ||
           m_run.reporter.Show({.text = "The project on disk was changed since it was opened here:\n" +
                                        m_data->DSFName() + "\n\nReplace it by what is open here?",
                                .buttons = Buttons::YesNo}) == Answer::Yes;
}
