#include "job_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

JobBar::JobBar(QWidget* parent)
    : QWidget(parent)
    , label(new QLabel(this))
    , bar(new QProgressBar(this))
{
    bar->setFixedWidth(140);
    bar->setMaximumHeight(16);
    bar->setAccessibleName(tr("Progress"));
    auto* cancel = new QPushButton(tr("Cancel"), this);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 8, 0);
    row->addWidget(label);
    row->addWidget(bar);
    row->addWidget(cancel);
    connect(cancel, &QPushButton::clicked, this, [this] {
        if (job)
            job->Cancel();
    });
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    hide();
}

void JobBar::Start(const QObject* owner, const QString& text, const BackgroundJob::Work& work)
{
    if (job)
        return;
    label->setText(text);
    bar->setRange(0, 0); // busy, until the first step is done
    jobOwner = owner;
    job = std::make_unique<BackgroundJob>(work);
    connect(job.get(), &BackgroundJob::Progress, this, &JobBar::ShowProgress);
    connect(job.get(), &BackgroundJob::Ended, this, &JobBar::OnEnded);
    show();
}

void JobBar::Stop()
{
    job.reset();
    hide();
}

void JobBar::ShowProgress(int done, int total)
{
    bar->setRange(0, total);
    bar->setValue(done);
}

void JobBar::OnEnded(const JobOutcome& outcome)
{
    job.release()->deleteLater(); // it is telling just now
    hide();
    emit JobEnded(outcome);
}
