// A web server on the loopback interface: answers with the pages that a test put there, and writes down every
// request.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QHostAddress>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>

namespace zendrix::qt {

class LocalServer {
 public:
  explicit LocalServer(const QString& address) : address_(address) {
    QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] {
      while (QTcpSocket* socket = server_.nextPendingConnection()) Serve(socket);
    });
    server_.listen(QHostAddress(address_));
  }

  QString Url(const QString& path) const {
    return QStringLiteral("http://%1:%2%3").arg(address_).arg(server_.serverPort()).arg(path);
  }
  void Put(const QString& path, const QByteArray& html) {
    answers_[path] = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n" + Tail(html);
  }
  void PutHead(const QString& path, const QByteArray& head) { answers_[path] = head + Tail("body"); }
  void Redirect(const QString& path, const QString& to) {
    PutHead(path, "HTTP/1.1 302 Found\r\nLocation: " + to.toLatin1() + "\r\n");
  }
  // Hangs up without an answer.
  void Drop(const QString& path) { answers_[path] = QByteArray(); }

  QStringList asked;        // paths, in order
  QList<QByteArray> heads;  // the same requests whole

 private:
  static QByteArray Tail(const QByteArray& body) {
    return "Content-Length: " + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
  }
  void Serve(QTcpSocket* socket) {
    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
      QByteArray head = socket->property("head").toByteArray() + socket->readAll();
      socket->setProperty("head", head);
      if (!head.contains("\r\n\r\n")) return;
      const QString path = QString::fromLatin1(head.split(' ').value(1));
      asked << path;
      heads << head;
      const QString plain = path.section(QLatin1Char('?'), 0, 0);
      socket->write(answers_.contains(plain) ? answers_[plain] : "HTTP/1.1 404 Not Found\r\n" + Tail("none"));
      socket->disconnectFromHost();
    });
  }

  QString address_;
  QTcpServer server_;
  QHash<QString, QByteArray> answers_;
};

}  // namespace zendrix::qt
