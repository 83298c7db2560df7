// Reads mails with JavaMail: a line of JSON for each.
import java.io.FileInputStream;
import java.util.ArrayList;
import java.util.Base64;
import java.util.List;
import java.util.concurrent.Callable;
import javax.mail.BodyPart;
import javax.mail.Message;
import javax.mail.Multipart;
import javax.mail.Part;
import javax.mail.Session;
import javax.mail.internet.InternetAddress;
import javax.mail.internet.MimeMessage;
import javax.mail.internet.MimeUtility;

class ReadJavaMail {
  static String json(String text) {
    if (text == null) {
      return "null";
    }
    StringBuilder escaped = new StringBuilder();
    text.chars().forEach(unit -> escaped.append(String.format("\\u%04x", unit)));
    return '"' + escaped.toString() + '"';
  }

  static String addresses(MimeMessage mail, Message.RecipientType field) throws Exception {
    List<String> found = new ArrayList<>();
    for (var one : mail.getRecipients(field)) {
      InternetAddress address = (InternetAddress) one;
      found.add("[" + json(address.getPersonal()) + "," + json(address.getAddress()) + "]");
    }
    return found.toString();
  }

  // What it throws is what it reads.
  static String attempt(Callable<String> read) {
    try {
      return read.call();
    } catch (Exception error) {
      return json("throws " + error);
    }
  }

  public static void main(String[] paths) throws Exception {
    System.setProperty("mail.mime.allowutf8", "true");
    Session session = Session.getInstance(System.getProperties());
    for (String path : paths) {
      MimeMessage mail = new MimeMessage(session, new FileInputStream(path));
      boolean parts = mail.isMimeType("multipart/*");
      Part body = parts ? ((Multipart) mail.getContent()).getBodyPart(0) : mail;
      StringBuilder line = new StringBuilder("{\"mail\":" + json(path));
      line.append(",\"subject\":" + attempt(() -> json(mail.getSubject())));
      line.append(",\"to\":" + attempt(() -> addresses(mail, Message.RecipientType.TO)));
      line.append(",\"cc\":" + attempt(() -> addresses(mail, Message.RecipientType.CC)));
      line.append(",\"date\":" + attempt(() -> "" + mail.getSentDate().getTime() / 1000));
      line.append(",\"references\":" + attempt(
          () -> json(MimeUtility.unfold(mail.getHeader("References", null)))));
      line.append(",\"text\":" + attempt(() -> json((String) body.getContent())));
      if (parts && ((Multipart) mail.getContent()).getCount() > 1) {
        BodyPart attachment = ((Multipart) mail.getContent()).getBodyPart(1);
        line.append(",\"filename\":" + attempt(() -> json(attachment.getFileName())));
        line.append(",\"data\":" + attempt(() -> json(Base64.getEncoder().encodeToString(
            attachment.getInputStream().readAllBytes()))));
      }
      System.out.println(line.append("}"));
    }
  }
}
