<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>CPU</source>
        <translation>CPU</translation>
    </message>
    <message>
        <source>GPU</source>
        <translation>GPU</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>メモリ</translation>
    </message>
    <message>
        <source>Storage</source>
        <translation>ストレージ</translation>
    </message>
    <message>
        <source>Sensors</source>
        <translation>センサー</translation>
    </message>
    <message>
        <source>SSD</source>
        <translation>SSD</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Battery</source>
        <translation>バッテリー</translation>
    </message>
    <message>
        <source>Ambient</source>
        <translation>周囲</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>その他</translation>
    </message>
    <message>
        <source>System</source>
        <translation>システム</translation>
    </message>
    <message>
        <source>Nominal</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>Elevated</source>
        <translation>やや高い</translation>
    </message>
    <message>
        <source>High</source>
        <translation>高い</translation>
    </message>
    <message>
        <source>Critical</source>
        <translation>危険</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>不明</translation>
    </message>
    <message>
        <source>%@ RPM</source>
        <extracomment>A fan speed; %@ is the number of revolutions per minute, already formatted.</extracomment>
        <translation>%@ 回転/分</translation>
    </message>
    <message>
        <source>Software Update</source>
        <translation>ソフトウェア・アップデート</translation>
    </message>
    <message>
        <source>Corvane %1 is available — you have %2</source>
        <translation>Corvane %1 を利用できます（現在のバージョンは %2）</translation>
    </message>
    <message>
        <source>Read the release notes</source>
        <translation>リリースノートを読む</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>このバージョンをスキップ</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>あとで通知</translation>
    </message>
    <message>
        <source>Install and Relaunch</source>
        <translation>インストールして再起動</translation>
    </message>
    <message>
        <source>Downloading Corvane %1…</source>
        <translation>Corvane %1 をダウンロード中…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Installing Corvane %1…</source>
        <translation>Corvane %1 をインストール中…</translation>
    </message>
    <message>
        <source>You're up to date</source>
        <translation>最新の状態です</translation>
    </message>
    <message>
        <source>Corvane %1 is the newest version available.</source>
        <translation>Corvane %1 は利用可能な最新バージョンです。</translation>
    </message>
    <message>
        <source>The update could not be completed.</source>
        <translation>アップデートを完了できませんでした。</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
</TS>
