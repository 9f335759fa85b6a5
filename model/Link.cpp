#include "Link.h"

#include "SpecialWords.h"
#include "Words.h"

#include <MoraSupport/MyLogger.h>

#include <QApplication>
#include <QMessageBox>

#include <cmath>

namespace {

void showFailure(const QString &text) {
    const QString title = QStringLiteral("Link");
    if (qobject_cast<QApplication *>(QCoreApplication::instance()))
        QMessageBox::critical(nullptr, title, text, QMessageBox::Ok);
    else
        MyLogger(title).error(text);
}

} // namespace

Link::~Link() {
    if (mpEndNode != mpStartNode)
        delete mpEndNode;
    delete mpStartNode;
}

std::unique_ptr<Link> Link::clone() const {
    std::unique_ptr<Link> copy(new Link(*this));
    copy->mpStartNode = copy->mpEndNode = nullptr;
    const auto copyOf = [&](const Node *node) -> Node * {
        if (!node)
            return nullptr;
        auto own = node->clone();
        const int place = mlVertex.indexOf(node->mpVertex);
        if (place >= 0)
            own->mpVertex = copy->mlVertex.at(place);
        return own.release();
    };
    copy->mpStartNode = copyOf(mpStartNode);
    copy->mpEndNode = mpEndNode == mpStartNode ? copy->mpStartNode : copyOf(mpEndNode);
    return copy;
}

QString Link::word(const QString &key) const {
    return words().getWord(key);
}

QString Link::actionTypeOfLanes() const {
    if (linkType == word(Words::MixedLane) || linkType == word(Words::MixedLaneSynonym))
        return word(Words::MixedLane);
    if (linkType == word(Words::NonMotorizedLane) || linkType == word(Words::BusLane))
        return linkType;
    return word(Words::MotorizedLane);
}

void Link::createLanes(const QList<double> &widths) {
    const QString actionType = actionTypeOfLanes();
    for (int i = 0; i < widths.size(); ++i) {
        if (!appendLane(i + 1, widths.at(i), actionType))
            return;
    }
}

void Link::createLanes() {
    // Only lanes made by number keep a pedestrian way's type; lanes of given widths on one are motor lanes.
    const bool isPedestrianWay = linkType == word(Words::Sidewalk);
    const QString actionType = isPedestrianWay ? linkType : actionTypeOfLanes();
    for (int made = 0; laneNumber > made; ++made) {
        if (!appendLane(made + 1, laneWidth, actionType))
            return;
    }
}

bool Link::appendLane(int serialNumber, double width, const QString &actionType) {
    long id = 0;
    if (!nextLaneId(id)) {
        showFailure(QStringLiteral("Lane %1 of link %2 and those after it were not made: the store gives no "
                                   "identifier; check that it is open and writable.")
                        .arg(QString::number(serialNumber), QString::number(linkID)));
        return false;
    }
    auto *lane = new Lane;
    lane->laneID = id;
    lane->linkID = linkID;
    lane->serialNumber = serialNumber;
    lane->width = width;
    lane->expectTravelDirection = word(Words::FreeRunning);
    lane->actionType = actionType;
    mlLane.append(lane);
    return true;
}

double Link::width() const {
    if (mlLane.isEmpty())
        return laneNumber * laneWidth;
    double sum = 0;
    for (const Lane *lane : mlLane)
        sum += lane->width;
    return sum;
}

void Link::calcuLength() {
    length = 0;
    for (int i = 1; i < mlVertex.size(); ++i)
        length += std::hypot(mlVertex[i]->x - mlVertex[i - 1]->x, mlVertex[i]->y - mlVertex[i - 1]->y);
}
