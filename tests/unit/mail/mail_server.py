#!/usr/bin/env python3
"""A mail server for tests, on the loopback. It prints its port, then one line of JSON for each mail that it took.

mail_server.py [--starttls | --tls] [--certificate FILE --key FILE] [--login USER PASSWORD]
               [--refuse greeting|ehlo|mail|rcpt|data CODE] [--silent]
"""
import argparse
import asyncio
import json
import ssl
import sys

from aiosmtpd.smtp import SMTP, AuthResult


def arguments():
    parser = argparse.ArgumentParser()
    parser.add_argument("--starttls", action="store_true")
    parser.add_argument("--tls", action="store_true")
    parser.add_argument("--certificate")
    parser.add_argument("--key")
    parser.add_argument("--login", nargs=2)
    parser.add_argument("--refuse", nargs=2)
    parser.add_argument("--silent", action="store_true")
    return parser.parse_args()


class Handler:
    def __init__(self, options):
        self.refuse = options.refuse or ["", ""]

    async def handle_EHLO(self, server, session, envelope, hostname, responses):
        session.host_name = hostname
        return [self.refuse[1] + " not you"] if self.refuse[0] == "ehlo" else responses

    async def handle_HELO(self, server, session, envelope, hostname):
        session.host_name = hostname
        return self.refuse[1] + " not you" if self.refuse[0] == "ehlo" else "250 localhost"

    async def handle_MAIL(self, server, session, envelope, address, options):
        if self.refuse[0] == "mail":
            return self.refuse[1] + " not from there"
        envelope.mail_from = address
        return "250 OK"

    async def handle_RCPT(self, server, session, envelope, address, options):
        if self.refuse[0] == "rcpt":
            return self.refuse[1] + " not here"
        envelope.rcpt_tos.append(address)
        return "250 OK"

    async def handle_DATA(self, server, session, envelope):
        if self.refuse[0] == "data":
            return self.refuse[1] + " not this"
        print(json.dumps({
            "from": envelope.mail_from,
            "to": envelope.rcpt_tos,
            "text": envelope.original_content.decode("latin-1"),
            "encrypted": session.ssl is not None or server.transport.get_extra_info("sslcontext") is not None,
            "login": session.auth_data.decode() if session.auth_data else "",
        }), flush=True)
        return "250 OK"


class TurnsAway(asyncio.Protocol):
    """Anybody who stands in the road can say this, whatever the server encrypts later."""

    def __init__(self, code):
        self.code = code

    def connection_made(self, transport):
        transport.write((self.code + " go away\r\n").encode())


async def main(options):
    context = None
    if options.certificate:
        context = ssl.create_default_context(ssl.Purpose.CLIENT_AUTH)
        context.load_cert_chain(options.certificate, options.key)

    def check(server, session, envelope, mechanism, data):
        fits = options.login and [data.login.decode(), data.password.decode()] == options.login
        return AuthResult(success=bool(fits), auth_data=data.login, handled=False)

    def make():
        if options.silent:
            return asyncio.Protocol()
        if options.refuse and options.refuse[0] == "greeting":
            return TurnsAway(options.refuse[1])
        return SMTP(Handler(options), hostname="localhost", tls_context=context if options.starttls else None,
                    require_starttls=options.starttls, authenticator=check if options.login else None,
                    auth_required=bool(options.login), auth_require_tls=not options.tls)

    server = await asyncio.get_running_loop().create_server(
        make, "127.0.0.1", 0, ssl=context if options.tls else None)
    print(server.sockets[0].getsockname()[1], flush=True)
    # The test's end of the pipe goes with the test, and the server with it.
    await asyncio.get_running_loop().run_in_executor(None, sys.stdin.read)


asyncio.run(main(arguments()))
