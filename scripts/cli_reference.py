#!/usr/bin/env python3
"""Keeps the CLI reference of the user guide and the voltrix-cli man page
in step with what voltrix-cli itself says (--help and help).

    cli_reference.py --cli PATH            rewrite docs/VoltrixDoc.htm's reference and docs/voltrix-cli.1
    cli_reference.py --cli PATH --check    exit 1 (and say which) when either is out of date
    cli_reference.py --cli PATH --pictures also draw the guide's pictures into docs/guide/
"""
import argparse
import html
import os
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
GUIDE = os.path.join(ROOT, 'docs', 'VoltrixDoc.htm')
MANPAGE = os.path.join(ROOT, 'docs', 'voltrix-cli.1')
BEGIN, END = '<!-- cli-reference begin: made by scripts/cli_reference.py -->', '<!-- cli-reference end -->'
TOPICS = ['FormTech', 'FormMech', 'FormIns', 'FormExpr', 'formOption', 'fit', 'menu']


def cli(path, *statements):
    env = dict(os.environ, QT_QPA_PLATFORM='offscreen')
    p = subprocess.run([path] + list(statements), capture_output=True, text=True, env=env)
    if p.returncode != 0:
        sys.exit('cli_reference: %s %s failed: %s' % (path, ' '.join(statements), p.stderr))
    return p.stdout


def reference_html(path):
    parts = ['<h3 id="cli-usage">voltrix-cli --help</h3>', '<pre>' + html.escape(cli(path, '--help')) + '</pre>',
             '<h3 id="cli-help">help</h3>', '<pre>' + html.escape(cli(path, 'help')) + '</pre>']
    for topic in TOPICS:
        parts.append('<h3 id="cli-help-%s">help %s</h3>' % (topic, topic))
        parts.append('<pre>' + html.escape(cli(path, 'help ' + topic)) + '</pre>')
    return BEGIN + '\n' + '\n'.join(parts) + '\n' + END


def with_reference(guide, path):
    start, stop = guide.find(BEGIN), guide.find(END)
    if start < 0 or stop < 0:
        sys.exit('cli_reference: the markers of the reference are missing from ' + GUIDE)
    return guide[:start] + reference_html(path) + guide[stop + len(END):]


def roff(text):
    out = []
    for line in text.split('\n'):
        line = line.replace('\\', '\\e').replace('-', '\\-')
        if line.startswith('.') or line.startswith("'"):
            line = '\\&' + line
        out.append(line)
    return '\n'.join(out)


def sections(usage):
    """The usage text cut at its headings ("options:", "statements:", ...)."""
    found, name = {}, 'head'
    for line in usage.split('\n'):
        if line.endswith(':') and not line.startswith(' '):
            name = line[:-1]
            continue
        found.setdefault(name, []).append(line)
    return {k: '\n'.join(v).strip('\n') for k, v in found.items()}


def indented(text):
    return '\n'.join(l for l in text.split('\n') if l.startswith('  '))


def prose(text):
    return '\n'.join(l for l in text.split('\n') if l and not l.startswith('  '))


def manpage(path):
    usage = cli(path, '--help')
    s = sections(usage)
    head = s['head'].split('\n')
    description = '\n'.join(head[2:]).strip()
    forms = [l.strip() for l in cli(path, 'help').split('forms:\n')[1].split('menu commands:')[0].split('\n') if l.strip()]
    version = cli(path, '--version').split()[-1]
    page = [
        '.TH VOLTRIX\\-CLI 1 "" "Voltrix %s" "User Commands"' % version,
        '.SH NAME', 'voltrix\\-cli \\- run the Voltrix voltammetry workbench from scripts, without a screen',
        '.SH SYNOPSIS', '.B voltrix\\-cli', '[\\fB\\-k\\fR] [\\fB\\-f\\fR \\fISCRIPT\\fR] [\\fISTATEMENT\\fR...]',
        '.SH DESCRIPTION', roff(description),
        '.SH OPTIONS', '.nf', roff(s['options']), '.fi',
        '.SH STATEMENTS', '.nf', roff(indented(s['statements'])), '.fi',
        '.PP', roff(prose(s['statements'])),
        '.PP', 'Forms: ' + ', '.join(forms) + '.',
        'Each form lists its controls with kind, caption, unit and value under \\fBhelp\\fR \\fIFORM\\fR.',
        '.SH "EXIT STATUS"', '.nf', roff(s['exit status']), '.fi',
        '.SH EXAMPLES', '.nf', roff(indented(s['example'])),
        roff('  voltrix-cli -k -f sweep.vx "show curves out.csv"'), '.fi',
        '.PP', roff(prose(s['example'])),
        '.SH "SEE ALSO"', '.BR voltrix (1),', 'the user guide VoltrixDoc.htm (installed in share/doc/voltrix).',
    ]
    return '\n'.join(page) + '\n'


PICTURES = {
    'reversible-cv.png': ['set FormIns.ComboScan=cycle', 'set FormIns.V=0.1', 'menu mnuSimulate'],
    'ec-mechanism.png': ['set FormIns.ComboScan=cycle', 'set FormIns.V=0.1', 'set FormMech.chem(1)=B',
                         'set FormMech.chem(2)=C', 'set FormExpr.kf(1)=1', 'set FormExpr.kb(1)=0.001',
                         'menu mnuSimulate'],
    'overlapped-peaks.png': ['click FormMech.CheckDigital', 'click FormMech.mech(4)', 'click FormTech.optTech(4)',
                             'set FormExpr.Eze(2)=0.02', 'set FormExpr.C(3)=1e-3', 'menu mnuSimulate',
                             'menu mnuExport {dir}/dpv.csv', 'menu mnuImport {dir}/dpv.csv',
                             'set FormExpr.CheckFitted(1)=0', 'set FormExpr.CheckFitted(13)=1',
                             'set FormExpr.CheckFitted(14)=1', 'set FormExpr.Eze(2)=-0.05',
                             'set FormExpr.TextCmin(14)=-0.2', 'menu mnuAutoSeparate'],
    'classic-accurate.png': ['click FormMech.CheckDigital', 'set FormIns.ComboScan=cycle', 'set FormIns.V=0.1',
                             'set FormIns.Estep=0.001', 'menu mnuSimulate', 'set formOption.overlap=1',
                             'click formOption.cmdOK', 'set FormMech.CheckAccurate=1', 'menu mnuSimulate'],
    'imported-fit.png': ['click FormMech.CheckDigital', 'set FormMech.CheckAccurate=1',
                         'import {root}/docs/guide/measured-cv.csv', 'set FormIns.V=0.1',
                         'set FormExpr.CheckFitted(1)=0', 'set FormExpr.CheckFitted(7)=1',
                         'set FormExpr.CheckFitted(13)=1', 'set FormExpr.ks(1)=0.05', 'set FormExpr.Eze(1)=0',
                         'set FormExpr.TextCmin(7)=1e-4', 'set FormExpr.TextCmax(7)=1', 'set FormExpr.TextStarts=8',
                         'menu mnuAutoFit'],
}


def pictures(path):
    folder = os.path.join(ROOT, 'docs', 'guide')
    os.makedirs(folder, exist_ok=True)
    with tempfile.TemporaryDirectory() as work:
        for name, statements in PICTURES.items():
            steps = [s.replace('{dir}', work).replace('{root}', ROOT) for s in statements]
            cli(path, *(steps + ['plot ' + os.path.join(folder, name)]))


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument('--cli', required=True)
    ap.add_argument('--check', action='store_true')
    ap.add_argument('--pictures', action='store_true')
    a = ap.parse_args()
    guide = open(GUIDE, encoding='utf-8').read()
    wanted = {GUIDE: with_reference(guide, a.cli), MANPAGE: manpage(a.cli)}
    stale = [f for f, text in wanted.items()
             if not os.path.exists(f) or open(f, encoding='utf-8').read() != text]
    if a.check:
        for f in stale:
            print('out of date: %s (python3 scripts/cli_reference.py --cli PATH rewrites it)' % os.path.relpath(f, ROOT))
        return 1 if stale else 0
    for f in stale:
        with open(f, 'w', encoding='utf-8') as out:
            out.write(wanted[f])
        print('rewrote', os.path.relpath(f, ROOT))
    if a.pictures:
        pictures(a.cli)
    return 0


if __name__ == '__main__':
    sys.exit(main())
